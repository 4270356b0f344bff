; expect: 6:4: =: operands of different sorts, (_ FloatingPoint 8 24) and (_ FloatingPoint 11 53)
(declare-const p Bool)
(declare-const x Float32)
(declare-const z Float64)
(assert (and p
  (= x z)))
