; expect: 4:18: zero_extend: expected a bit-vector, got a term of Bool
(declare-const a (_ BitVec 8))
(declare-const p Bool)
(assert (= a ((_ zero_extend 7) p)))
