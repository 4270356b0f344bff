; Converting to an integer rounds as roundToIntegral does.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const x F)
(declare-const r RoundingMode)
(assert (and (fp.lt (fp.abs x) ((_ to_fp 8 24) RNE 100.0)) (not (fp.eq ((_ to_fp 8 24) RNE ((_ fp.to_sbv 8) r x)) (fp.roundToIntegral r x)))))
(check-sat)
