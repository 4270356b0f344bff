; expect: 3:10: fp.gt: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const x Float32)
(assert (fp.gt x 0))
