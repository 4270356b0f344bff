; expect: 2:23: to_fp: the exponent must be an integer, got 1/2
(assert (fp.isNaN ((_ to_fp 8 24) RNE 3 0.5)))
