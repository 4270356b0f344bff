; expect: 3:9: an assertion must be a Bool, got a term of (_ FloatingPoint 8 24)
(declare-const x Float32)
(assert x)
