; expect: 2:45: /: division by zero
(assert (fp.isNaN ((_ to_fp 8 24) RNE (* 2 (/ 1.0 (- 2 2))))))
