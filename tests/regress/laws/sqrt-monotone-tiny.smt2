; Roots are ordered as the floats are.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const y F)
(declare-const r RoundingMode)
(assert (and (fp.leq x y) (fp.isPositive x) (not (fp.leq (fp.sqrt r x) (fp.sqrt r y)))))
(check-sat)
