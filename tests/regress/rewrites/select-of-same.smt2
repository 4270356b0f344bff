; The minimum and the maximum of a value and itself are that value.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (or
  (not (= (fp.min x x) x))
  (not (= (fp.max x x) x))
))
(set-info :status unsat)
(check-sat)
