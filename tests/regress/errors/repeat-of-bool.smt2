; expect: 4:18: repeat: expected a bit-vector, got a term of Bool
(declare-const a (_ BitVec 8))
(declare-const p Bool)
(assert (= a ((_ repeat 8) p)))
