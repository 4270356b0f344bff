; expect: 4:20: ite: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const p Bool)
(declare-const x Float32)
(assert (fp.isNaN (ite p x 0.0)))
