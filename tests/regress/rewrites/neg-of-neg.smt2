; Negating twice is doing nothing, to NaN too.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (not (= (fp.neg (fp.neg x)) x)))
(set-info :status unsat)
(check-sat)
