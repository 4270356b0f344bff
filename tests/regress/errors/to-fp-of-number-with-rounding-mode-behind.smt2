; expect: 2:23: to_fp: expected a rounding mode, got a number
(assert (fp.isNaN ((_ to_fp 8 24) 0.5 RNE)))
