; Bits that come from a float are read as that float.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (not (= ((_ to_fp 8 24) (fp.to_ieee_bv x)) x)))
(set-info :status unsat)
(check-sat)
