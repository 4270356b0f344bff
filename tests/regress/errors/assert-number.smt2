; expect: 2:9: a number is no term here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(assert 1)
