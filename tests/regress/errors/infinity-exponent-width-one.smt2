; expect: 3:17: a floating-point sort with exponent width 1 and significand width 24: both must be greater than 1
(declare-const x Float32)
(assert (= x (_ +oo 1 24)))
