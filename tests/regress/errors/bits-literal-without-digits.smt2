; expect: 3:17: unknown symbol 'bv'
(declare-const a (_ BitVec 8))
(assert (= a (_ bv 8)))
