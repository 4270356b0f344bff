; A remainder is its own remainder.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 5 11))
(declare-const x F)
(declare-const y F)
(assert (not (= (fp.rem (fp.rem x y) y) (fp.rem x y))))
(check-sat)
