; expect: 2:40: / takes 2 arguments, got 1
(assert (fp.isNaN ((_ to_fp 8 24) RNE (/ 2))))
