; expect: 4:10: bvugt: expected a bit-vector, got a term of (_ FloatingPoint 8 24)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (bvugt x a))
