; expect: 2:21: FloatingPoint takes 2 indices, got 3
(declare-const f (_ FloatingPoint 1 8 23))
