; expect: 3:10: bvnot: expected a bit-vector, got a term of Bool
(declare-const p Bool)
(assert (bvnot p))
