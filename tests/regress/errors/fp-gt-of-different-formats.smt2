; expect: 4:10: fp.gt: operands of different sorts, (_ FloatingPoint 8 24) and (_ FloatingPoint 11 53)
(declare-const x Float32)
(declare-const z Float64)
(assert (fp.gt x z))
