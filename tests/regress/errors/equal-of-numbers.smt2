; expect: 2:10: =: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(assert (= 1 1))
