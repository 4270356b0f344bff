; Of all values but zeros and NaN there is one each.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(declare-const y F)
(assert (not (= (=> (not (or (fp.isNaN y) (fp.isZero y))) (= (fp.eq x y) (= x y))) true)))
(set-info :status unsat)
(check-sat)
