; A cast of what was widened is a cast of the operand.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const x F)
(assert (or
  (not (= ((_ to_fp 3 4) r ((_ to_fp 4 6) s x)) x))
  (not (= ((_ to_fp 5 8) r ((_ to_fp 4 6) s x)) ((_ to_fp 5 8) r x)))
  (not (= ((_ to_fp 2 3) r ((_ to_fp 4 6) s x)) ((_ to_fp 2 3) r x)))
  (not (= ((_ to_fp 3 6) r ((_ to_fp 3 5) s x)) ((_ to_fp 3 6) r x)))
))
(set-info :status unsat)
(check-sat)
