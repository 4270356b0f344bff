; expect: 4:15: bvxnor: expected a bit-vector, got a term of (_ FloatingPoint 8 24)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= a (bvxnor x x)))
