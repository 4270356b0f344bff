; The maximum is the negated minimum of the negations, but for zeros, between which each chooses.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const y F)
(assert (not (or (and (fp.isZero x) (fp.isZero y)) (= (fp.max x y) (fp.neg (fp.min (fp.neg x) (fp.neg y)))))))
(check-sat)
