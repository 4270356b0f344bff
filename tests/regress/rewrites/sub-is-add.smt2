; A difference is the sum with the negation, the signs of zeros included.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (not (= (fp.sub r x y) (fp.add r x (fp.neg y)))))
(set-info :status unsat)
(check-sat)
