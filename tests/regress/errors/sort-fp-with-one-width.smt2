; expect: 2:21: FloatingPoint takes 2 indices, got 1
(declare-const f (_ FloatingPoint 32))
