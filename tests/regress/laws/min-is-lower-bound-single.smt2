; The minimum is one of the operands and no larger than either.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const x F)
(declare-const y F)
(assert (not (or (fp.isNaN x) (fp.isNaN y) (and (fp.leq (fp.min x y) x) (fp.leq (fp.min x y) y)
  (or (fp.eq (fp.min x y) x) (fp.eq (fp.min x y) y))))))
(check-sat)
