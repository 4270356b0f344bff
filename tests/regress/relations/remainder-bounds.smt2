; A remainder is no larger than the dividend, nor than the divisor.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const y F)
(define-fun t () F (fp.rem x y))
(assert (not (and
  (or (fp.isNaN t) (fp.leq (fp.abs t) (fp.abs x)))
  (or (fp.isNaN t) (fp.leq (fp.abs t) (fp.abs y))))))
(set-info :status unsat)
(check-sat)
