; expect: 3:23: to_fp: expected a float, a bit-vector or a number, got a term of Bool
(declare-const p Bool)
(assert (fp.isNaN ((_ to_fp 8 24) RNE p)))
