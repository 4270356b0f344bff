; expect: 3:24: and: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const p Bool)
(assert (let ((-1 p)) (and -1 -2)))
