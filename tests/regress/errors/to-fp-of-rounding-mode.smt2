; expect: 2:23: to_fp: expected a bit-vector, got a term of RoundingMode
(assert (fp.isNaN ((_ to_fp 8 24) RNE)))
