; expect: 3:23: to_fp_unsigned: expected a bit-vector, got a term of (_ FloatingPoint 8 24)
(declare-const x Float32)
(assert (fp.isNaN ((_ to_fp_unsigned 11 53) RNE x)))
