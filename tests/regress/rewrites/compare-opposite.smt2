; Only NaN is its own negation, and only zeros compare equal to theirs.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(assert (or
  (not (= (= x (fp.neg x)) (fp.isNaN x)))
  (not (= (fp.eq (fp.neg x) x) (fp.isZero x)))
))
(set-info :status unsat)
(check-sat)
