; What is less than half the divisor is its own remainder.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const y F)
(assert (and (fp.lt (fp.add RTP (fp.abs x) (fp.abs x)) (fp.abs y)) (not (= (fp.rem x y) x))))
(check-sat)
