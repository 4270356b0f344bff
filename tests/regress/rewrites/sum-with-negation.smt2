; A difference is the sum with the negation, the signs of zeros included.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (or
  (not (= (fp.add r x (fp.neg y)) (fp.sub r x y)))
  (not (= (fp.add r (fp.neg x) y) (fp.sub r y x)))
  (not (= (fp.sub r x (fp.neg y)) (fp.add r x y)))
))
(set-info :status unsat)
(check-sat)
