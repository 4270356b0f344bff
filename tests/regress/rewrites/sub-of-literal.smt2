; A difference from a value is the sum with its negation.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (not (= (fp.sub r x y) (fp.add r x (fp.neg y)))))
(set-info :status unsat)
(check-sat)
