; 2x = x + x, zeros and infinities included.
(set-logic QF_FP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const r RoundingMode)
(declare-const x F)
(assert (not (= (fp.mul r ((_ to_fp 8 24) RNE 2) x) (fp.add r x x))))
(set-info :status unsat)
(check-sat)
