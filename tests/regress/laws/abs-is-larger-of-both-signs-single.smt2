; |x| is x or -x and not negative.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const x F)
(assert (not (or (fp.isNaN x) (and (or (= (fp.abs x) x) (= (fp.abs x) (fp.neg x))) (fp.isPositive (fp.abs x))))))
(check-sat)
