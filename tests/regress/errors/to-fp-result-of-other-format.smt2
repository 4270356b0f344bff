; expect: 3:10: fp.eq: operands of different sorts, (_ FloatingPoint 8 24) and (_ FloatingPoint 11 53)
(declare-const x Float32)
(assert (fp.eq x ((_ to_fp 11 53) RNE x)))
