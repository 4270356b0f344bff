; expect: 3:40: *: expected a number, got a term of (_ FloatingPoint 8 24)
(declare-const x Float32)
(assert (fp.isNaN ((_ to_fp 8 24) RNE (* 2 x))))
