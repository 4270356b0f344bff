; expect: 4:18: rotate_right: expected a bit-vector, got a term of (_ FloatingPoint 8 24)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= a ((_ rotate_right 1) x)))
