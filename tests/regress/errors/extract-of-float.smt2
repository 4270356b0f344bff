; expect: 4:18: extract: expected a bit-vector, got a term of (_ FloatingPoint 8 24)
(declare-const s (_ BitVec 1))
(declare-const x Float32)
(assert (= s ((_ extract 31 31) x)))
