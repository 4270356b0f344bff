; expect: 3:15: unknown symbol 'bv5'
(declare-const a (_ BitVec 8))
(assert (= a (bv5 8)))
