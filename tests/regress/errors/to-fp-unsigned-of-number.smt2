; expect: 2:23: to_fp_unsigned: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(assert (fp.isNaN ((_ to_fp_unsigned 8 24) RNE 3)))
