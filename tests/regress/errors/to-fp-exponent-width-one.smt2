; expect: 3:23: a floating-point sort with exponent width 1 and significand width 7: both must be greater than 1
(declare-const a (_ BitVec 8))
(assert (fp.isNaN ((_ to_fp 1 7) a)))
