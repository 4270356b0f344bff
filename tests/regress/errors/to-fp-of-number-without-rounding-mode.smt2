; expect: 2:23: to_fp of a number takes a rounding mode before it
(assert (fp.isNaN ((_ to_fp 8 24) 0.5)))
