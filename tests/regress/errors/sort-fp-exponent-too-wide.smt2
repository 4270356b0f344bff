; expect: 2:21: a floating-point sort with exponent width 4294967295 and significand width 2: widths go up to 1048576 in sum
(declare-const f (_ FloatingPoint 4294967295 2))
