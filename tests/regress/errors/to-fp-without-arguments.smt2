; expect: 2:22: to_fp takes 1 or 2 arguments, got 0
(assert (fp.isNaN (_ to_fp 8 24)))
