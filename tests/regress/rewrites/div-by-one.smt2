; A quotient by 1 or -1 is not rounded.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const r RoundingMode)
(declare-const x F)
(assert (or
  (not (= (fp.div r x ((_ to_fp 5 11) RNE 1.0)) x))
  (not (= (fp.div r x ((_ to_fp 5 11) RNE (- 1.0))) (fp.neg x)))
))
(set-info :status unsat)
(check-sat)
