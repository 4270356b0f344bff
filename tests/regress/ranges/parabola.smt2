; A parabola is above its vertex; its bound is reached only where the two products are near.
(set-info :status unsat)
(set-logic QF_FP)
(declare-const x Float64)
(define-fun parabola () Float64
  (fp.sub RNE (fp.mul RNE x x) (fp.mul RNE ((_ to_fp 11 53) RNE 3.0) x)))
(assert (and (fp.leq ((_ to_fp 11 53) RNE 0.0) x) (fp.leq x ((_ to_fp 11 53) RNE 10.0))))
(assert (fp.lt parabola ((_ to_fp 11 53) RNE (- 2.5))))
(check-sat)
