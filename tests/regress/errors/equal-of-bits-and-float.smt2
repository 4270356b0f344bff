; expect: 3:10: =: operands of different sorts, (_ BitVec 32) and (_ FloatingPoint 8 24)
(declare-const x Float32)
(assert (= #x00000000 x))
