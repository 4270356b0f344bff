; Of two rounded results with one operand in common, the first is below the second only if the other
; operands are in that order, or in the opposite one for negative factors and divisors.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 3))
(declare-const r RoundingMode)
(declare-const u F)
(declare-const v F)
(declare-const w F)
(define-fun zero () F (_ +zero 3 3))
(assert (not (and
  (=> (fp.lt (fp.add r u v) (fp.add r u w)) (fp.lt v w))
  (=> (fp.lt (fp.sub r v u) (fp.sub r w u)) (fp.lt v w))
  (=> (fp.lt (fp.sub r u v) (fp.sub r u w)) (fp.lt w v))
  (=> (and (fp.lt zero u) (fp.lt (fp.mul r u v) (fp.mul r u w))) (fp.lt v w))
  (=> (and (fp.lt u zero) (fp.lt (fp.mul r u v) (fp.mul r u w))) (fp.lt w v))
  (=> (and (fp.lt zero u) (fp.lt (fp.div r v u) (fp.div r w u))) (fp.lt v w))
  (=> (and (fp.lt u zero) (fp.lt (fp.div r v u) (fp.div r w u))) (fp.lt w v)))))
(set-info :status unsat)
(check-sat)
