; A remainder has the sign of its dividend and does not depend on that of the divisor.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const y F)
(assert (or
  (not (= (fp.rem x (fp.neg y)) (fp.rem x y)))
  (not (= (fp.rem x (fp.abs y)) (fp.rem x y)))
  (not (= (fp.rem (fp.neg x) y) (fp.neg (fp.rem x y))))
))
(set-info :status unsat)
(check-sat)
