; expect: 4:10: fp.lt: operands of different sorts, (_ FloatingPoint 8 24) and (_ FloatingPoint 11 53)
(declare-const x Float32)
(declare-const z Float64)
(assert (fp.lt x z))
