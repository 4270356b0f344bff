; A root that was rounded down has a square that is no larger, of a float.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 5 11))
(declare-const x F)
(assert (not (or (fp.isNaN x) (fp.isNegative x) (fp.leq (fp.mul RTN (fp.sqrt RTN x) (fp.sqrt RTN x)) x))))
(check-sat)
