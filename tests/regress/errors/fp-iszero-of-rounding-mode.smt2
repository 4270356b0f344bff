; expect: 3:10: fp.isZero: expected a floating-point term, got a term of RoundingMode
(declare-const r RoundingMode)
(assert (fp.isZero r))
