; expect: 3:23: a floating-point sort with exponent width 1048576 and significand width 2: widths go up to 1048576 in sum
(declare-const x Float32)
(assert (fp.isNaN ((_ to_fp 1048576 2) RNE x)))
