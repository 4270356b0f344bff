(declare-const x Float64)
(assert (or (fp.isNaN x) (fp.isInfinite x) (fp.isZero (fp.neg x))))
(assert (or (fp.isNormal x) (fp.isSubnormal x) (fp.isNegative x) (fp.isPositive x)))
(check-sat)
