; expect: 3:10: =: operands of different sorts, (_ FloatingPoint 8 24) and (_ FloatingPoint 11 53)
(declare-const x Float32)
(assert (= x (_ -oo 11 53)))
