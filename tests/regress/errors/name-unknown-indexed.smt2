; expect: 3:18: unknown symbol 'slice'
(declare-const a (_ BitVec 8))
(assert (= a ((_ slice 7 0) a)))
