; expect: 4:15: bvcomp: expected a bit-vector, got a term of Bool
(declare-const p Bool)
(declare-const s (_ BitVec 1))
(assert (= s (bvcomp p p)))
