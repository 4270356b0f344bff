; A number by itself is 1, but for zeros and infinities.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(assert (not (= (fp.div r x x) (ite (or (fp.isNaN x) (fp.isInfinite x) (fp.isZero x)) (_ NaN 3 4) ((_ to_fp 3 4) RNE 1.0)))))
(set-info :status unsat)
(check-sat)
