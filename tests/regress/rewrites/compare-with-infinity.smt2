; Nothing lies beyond an infinity, and all but NaN on this side of it.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (or
  (not (= (fp.lt x (_ -oo 8 24)) false))
  (not (= (fp.lt (_ +oo 8 24) x) false))
  (not (= (fp.leq x (_ +oo 8 24)) (not (fp.isNaN x))))
  (not (= (fp.leq (_ -oo 8 24) x) (not (fp.isNaN x))))
  (not (= (fp.leq x (_ -oo 8 24)) (= x (_ -oo 8 24))))
  (not (= (fp.leq (_ +oo 8 24) x) (= x (_ +oo 8 24))))
))
(set-info :status unsat)
(check-sat)
