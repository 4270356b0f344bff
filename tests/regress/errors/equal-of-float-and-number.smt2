; expect: 3:10: =: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const x Float32)
(assert (= x 0.5))
