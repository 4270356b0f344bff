; expect: 2:40: / takes at least 2 arguments, got 1
(assert (fp.isNaN ((_ to_fp 8 24) RNE (/ 2))))
