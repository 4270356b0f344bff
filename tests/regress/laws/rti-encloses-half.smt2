; Rounding down and up encloses a float in a unit interval.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 5 11))
(declare-const x F)
(assert (not (or (fp.isNaN x) (fp.isInfinite x) (and (fp.leq (fp.roundToIntegral RTN x) x (fp.roundToIntegral RTP x)) (fp.leq (fp.sub RTN (fp.roundToIntegral RTP x) (fp.roundToIntegral RTN x)) ((_ to_fp 5 11) RNE 1.0))))))
(check-sat)
