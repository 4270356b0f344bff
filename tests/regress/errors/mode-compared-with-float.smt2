; expect: 4:10: =: operands of different sorts, RoundingMode and (_ FloatingPoint 8 24)
(declare-const r RoundingMode)
(declare-const x Float32)
(assert (= r x))
