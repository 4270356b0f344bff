; expect: 4:18: rotate_left: expected a bit-vector, got a term of Bool
(declare-const a (_ BitVec 8))
(declare-const p Bool)
(assert (= a ((_ rotate_left 1) p)))
