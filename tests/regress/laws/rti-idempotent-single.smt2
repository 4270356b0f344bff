; Rounding to an integer a second time changes nothing, in any mode.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const x F)
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(assert (not (= (fp.roundToIntegral s (fp.roundToIntegral r x)) (fp.roundToIntegral r x))))
(check-sat)
