; An absolute value does not depend on the sign.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (or
  (not (= (fp.abs (fp.neg x)) (fp.abs x)))
  (not (= (fp.abs (fp.abs x)) (fp.abs x)))
))
(set-info :status unsat)
(check-sat)
