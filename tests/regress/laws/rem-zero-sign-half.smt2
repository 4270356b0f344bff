; A remainder that is zero has the sign of the dividend.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 5 11))
(declare-const x F)
(declare-const y F)
(assert (and (fp.isZero (fp.rem x y)) (not (= (fp.isNegative (fp.rem x y)) (fp.isNegative x)))))
(check-sat)
