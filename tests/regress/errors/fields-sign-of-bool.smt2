; expect: 6:15: fp: expected a bit-vector, got a term of Bool
(declare-const h Float16)
(declare-const p Bool)
(declare-const e (_ BitVec 5))
(declare-const m (_ BitVec 10))
(assert (= h (fp p e m)))
