; expect: 3:15: unknown symbol 'bv_add'
(declare-const a (_ BitVec 8))
(assert (= a (bv_add a a)))
