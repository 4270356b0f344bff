; expect: 2:21: a floating-point sort with exponent width 8 and significand width 1: both must be greater than 1
(declare-const f (_ FloatingPoint 8 1))
