; Negating a factor swaps the two modes toward infinity.
(set-logic QF_FP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (not (= (fp.mul RTP (fp.neg x) y) (fp.neg (fp.mul RTN x y)))))
(set-info :status unsat)
(check-sat)
