; A fused product with 1 or -1 is a sum.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (or
  (not (= (fp.fma r x ((_ to_fp 3 4) RNE 1.0) y) (fp.add r x y)))
  (not (= (fp.fma r ((_ to_fp 3 4) RNE (- 1.0)) x y) (fp.add r (fp.neg x) y)))
))
(set-info :status unsat)
(check-sat)
