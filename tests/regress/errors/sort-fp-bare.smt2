; expect: 2:18: FloatingPoint takes 2 indices, got 0
(declare-const f FloatingPoint)
