; expect: 3:10: not: expected a Bool, got a term of (_ FloatingPoint 8 24)
(declare-const x Float32)
(assert (not x))
