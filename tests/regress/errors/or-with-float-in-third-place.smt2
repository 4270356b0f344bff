; expect: 4:10: or: expected a Bool, got a term of (_ FloatingPoint 8 24)
(declare-const p Bool)
(declare-const x Float32)
(assert (or p p x))
