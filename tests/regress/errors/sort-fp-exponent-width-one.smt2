; expect: 2:21: a floating-point sort with exponent width 1 and significand width 24: both must be greater than 1
(declare-const f (_ FloatingPoint 1 24))
