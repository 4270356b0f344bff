; expect: 3:23: to_fp: expected a bit-vector, got a term of Bool
(declare-const p Bool)
(assert (fp.isNaN ((_ to_fp 8 24) p)))
