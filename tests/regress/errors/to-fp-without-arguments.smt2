; expect: 2:22: to_fp takes 1 to 3 arguments, got 0
(assert (fp.isNaN (_ to_fp 8 24)))
