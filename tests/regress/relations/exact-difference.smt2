; A difference that is smaller than both operands, rounded or not, is exact.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const x F)
(declare-const y F)
(define-fun d () F (fp.sub s x y))
(define-fun small () Bool (and (fp.lt (fp.abs d) (fp.abs x)) (fp.lt (fp.abs d) (fp.abs y))))
(assert (not (and
  (=> small (fp.eq (fp.add r d y) x))
  (=> small (fp.eq (fp.sub r x d) y)))))
(set-info :status unsat)
(check-sat)
