; The bits of a float read as a float are that float.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(assert (not (= ((_ to_fp 3 4) (fp.to_ieee_bv x)) x)))
(check-sat)
