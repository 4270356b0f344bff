; expect: 2:10: fp.isNaN: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(assert (fp.isNaN 0.5))
