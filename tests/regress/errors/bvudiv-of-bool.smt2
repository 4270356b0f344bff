; expect: 4:15: bvudiv: expected a bit-vector, got a term of Bool
(declare-const a (_ BitVec 8))
(declare-const p Bool)
(assert (= a (bvudiv p a)))
