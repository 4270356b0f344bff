; expect: 3:13: a number is no term here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(check-sat)
(get-value (1.5))
