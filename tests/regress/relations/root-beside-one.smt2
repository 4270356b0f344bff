; A root lies between its operand and 1.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(define-fun one () F ((_ to_fp 3 4) RNE 1.0))
(define-fun t () F (fp.sqrt r x))
(assert (not (and
  (=> (fp.lt one t) (and (fp.lt one x) (fp.leq t x)))
  (=> (fp.lt t one) (and (fp.lt x one) (fp.leq x t))))))
(set-info :status unsat)
(check-sat)
