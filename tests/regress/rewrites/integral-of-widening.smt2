; The integer nearest to a widened value is the widened integer.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const x F)
(assert (not (= (fp.roundToIntegral r ((_ to_fp 5 11) s x)) ((_ to_fp 5 11) s (fp.roundToIntegral r x)))))
(set-info :status unsat)
(check-sat)
