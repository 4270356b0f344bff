; expect: 3:10: and: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const p Bool)
(assert (and p 1))
