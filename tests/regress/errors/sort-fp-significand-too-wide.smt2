; expect: 2:21: a floating-point sort with exponent width 8 and significand width 1048576: widths go up to 1048576 in sum
(declare-const f (_ FloatingPoint 8 1048576))
