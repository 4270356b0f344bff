; expect: 4:15: bvmul: expected a bit-vector, got a term of Bool
(declare-const a (_ BitVec 8))
(declare-const p Bool)
(assert (= a (bvmul p a)))
