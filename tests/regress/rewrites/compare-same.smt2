; A comparison of a value with itself asks for NaN at most.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (or
  (not (= (fp.eq x x) (not (fp.isNaN x))))
  (not (= (fp.leq x x) (not (fp.isNaN x))))
  (not (= (fp.lt x x) false))
  (not (= (= x x) true))
))
(set-info :status unsat)
(check-sat)
