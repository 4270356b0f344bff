; expect: 2:21: a floating-point sort with exponent width 0 and significand width 0: both must be greater than 1
(declare-const f (_ FloatingPoint 0 0))
