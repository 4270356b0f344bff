; Nothing compares with NaN, and NaN alone is equal to it.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (or
  (not (= (fp.eq x (_ NaN 8 24)) false))
  (not (= (fp.lt (_ NaN 8 24) x) false))
  (not (= (fp.leq x (_ NaN 8 24)) false))
  (not (= (= x (_ NaN 8 24)) (fp.isNaN x)))
))
(set-info :status unsat)
(check-sat)
