; expect: 4:15: bvshl: expected a bit-vector, got a term of Bool
(declare-const a (_ BitVec 8))
(declare-const p Bool)
(assert (= a (bvshl p a)))
