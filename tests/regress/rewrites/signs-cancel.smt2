; Two negations do not change a product or quotient, in any mode.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(declare-const z F)
(assert (or
  (not (= (fp.mul r (fp.neg x) (fp.neg y)) (fp.mul r x y)))
  (not (= (fp.div r (fp.neg x) (fp.neg y)) (fp.div r x y)))
  (not (= (fp.fma r (fp.neg x) (fp.neg y) z) (fp.fma r x y z)))
))
(set-info :status unsat)
(check-sat)
