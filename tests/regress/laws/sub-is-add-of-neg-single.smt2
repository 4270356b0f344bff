; A difference is the sum with the negation.
(set-logic QF_FP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (not (= (fp.sub r x y) (fp.add r x (fp.neg y)))))
(set-info :status unsat)
(check-sat)
