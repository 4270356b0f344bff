; expect: 3:15: fp: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const h Float16)
(assert (= h (fp 0 0 1)))
