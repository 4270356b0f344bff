; A cast to a wider format and back is the identity.
(set-logic QF_FP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const r RoundingMode)
(declare-const q RoundingMode)
(declare-const x F)
(assert (not (= ((_ to_fp 8 24) q ((_ to_fp 11 53) r x)) x)))
(set-info :status unsat)
(check-sat)
