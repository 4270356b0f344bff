; expect: 2:22: a number is no term here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(check-sat-assuming (1))
