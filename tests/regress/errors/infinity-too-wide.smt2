; expect: 3:17: a floating-point sort with exponent width 8 and significand width 1048570: widths go up to 1048576 in sum
(declare-const x Float32)
(assert (= x (_ -oo 8 1048570)))
