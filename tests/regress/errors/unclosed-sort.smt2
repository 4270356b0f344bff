; expect: 2:18: this '(' is never closed
(declare-const x (_ FloatingPoint 8 24
