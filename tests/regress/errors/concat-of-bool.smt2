; expect: 5:15: concat: expected a bit-vector, got a term of Bool
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(declare-const p Bool)
(assert (= a (concat c p)))
