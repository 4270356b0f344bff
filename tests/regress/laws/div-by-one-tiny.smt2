; A quotient by one is the dividend.
(set-logic QF_FP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(assert (not (= (fp.div r x ((_ to_fp 3 4) RNE 1)) x)))
(set-info :status unsat)
(check-sat)
