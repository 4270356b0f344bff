; expect: 3:23: a floating-point sort with exponent width 8 and significand width 0: both must be greater than 1
(declare-const a (_ BitVec 8))
(assert (fp.isNaN ((_ to_fp_unsigned 8 0) RNE a)))
