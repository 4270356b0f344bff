; A cast into the same format does nothing.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const r RoundingMode)
(declare-const x F)
(assert (not (= ((_ to_fp 8 24) r x) x)))
(set-info :status unsat)
(check-sat)
