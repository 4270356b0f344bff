; expect: 2:40: + is not supported
(assert (fp.isNaN ((_ to_fp 8 24) RNE (+ 1 2))))
