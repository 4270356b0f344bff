; expect: 3:17: unknown symbol 'oo'
(declare-const x Float32)
(assert (= x (_ oo 8 24)))
