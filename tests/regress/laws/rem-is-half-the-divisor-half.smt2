; A remainder is at most half the divisor.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 5 11))
(declare-const x F)
(declare-const y F)
(assert (and (not (fp.isNaN (fp.rem x y))) (not (fp.isInfinite y)) (not (fp.leq (fp.abs (fp.rem x y)) (fp.abs (fp.sub RTP (fp.abs y) (fp.abs (fp.rem x y))))))))
(check-sat)
