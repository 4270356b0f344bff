; 2x = x + x, zeros and infinities included.
(set-logic QF_FP)
(define-sort F () (_ FloatingPoint 5 11))
(declare-const r RoundingMode)
(declare-const x F)
(assert (not (= (fp.mul r ((_ to_fp 5 11) RNE 2) x) (fp.add r x x))))
(set-info :status unsat)
(check-sat)
