; expect: 3:15: fp.mul: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const x Float32)
(assert (= x (fp.mul RNE 2 x)))
