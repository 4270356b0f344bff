; The minimum and the maximum of a value and NaN are that value.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (or
  (not (= (fp.min x (_ NaN 8 24)) x))
  (not (= (fp.max (_ NaN 8 24) x) x))
))
(set-info :status unsat)
(check-sat)
