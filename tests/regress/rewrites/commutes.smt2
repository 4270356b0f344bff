; Sums and products do not depend on the order of their operands.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(declare-const z F)
(assert (or
  (not (= (fp.add r x y) (fp.add r y x)))
  (not (= (fp.mul r x y) (fp.mul r y x)))
  (not (= (fp.fma r x y z) (fp.fma r y x z)))
))
(set-info :status unsat)
(check-sat)
