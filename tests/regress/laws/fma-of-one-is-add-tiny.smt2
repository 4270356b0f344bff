; A factor of one makes a fused operation a sum.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const z F)
(declare-const r RoundingMode)
(assert (not (= (fp.fma r x ((_ to_fp 3 4) RNE 1.0) z) (fp.add r x z))))
(check-sat)
