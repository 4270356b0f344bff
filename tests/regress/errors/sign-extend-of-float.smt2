; expect: 4:18: sign_extend: expected a bit-vector, got a term of (_ FloatingPoint 8 24)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= a ((_ sign_extend 7) x)))
