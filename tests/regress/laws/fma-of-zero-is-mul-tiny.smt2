; Adding zero to a product that is not zero changes nothing.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const y F)
(declare-const r RoundingMode)
(assert (not (or (fp.isZero x) (fp.isZero y) (= (fp.fma r x y (_ +zero 3 4)) (fp.mul r x y)))))
(check-sat)
