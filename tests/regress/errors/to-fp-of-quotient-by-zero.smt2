; expect: 2:40: /: division by zero
(assert (fp.isNaN ((_ to_fp 8 24) RNE (/ 1 0.0))))
