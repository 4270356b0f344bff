; expect: 2:40: - takes 1 argument, got 2
(assert (fp.isNaN ((_ to_fp 8 24) RNE (- 3 2))))
