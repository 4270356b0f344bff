; Multiplication commutes, in every mode.
(set-logic QF_FP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (not (= (fp.mul r x y) (fp.mul r y x))))
(set-info :status unsat)
(check-sat)
