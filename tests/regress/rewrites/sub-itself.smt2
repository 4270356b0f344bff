; A number and itself cancel to the zero of the mode.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const r RoundingMode)
(declare-const x F)
(assert (not (= (fp.sub r x x) (ite (or (fp.isNaN x) (fp.isInfinite x)) (_ NaN 5 11) (ite (= r RTN) (_ -zero 5 11) (_ +zero 5 11))))))
(set-info :status unsat)
(check-sat)
