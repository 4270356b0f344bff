; One fraction bit, two exponent bits: eight values between 0 and infinity, two of them NaN.
(set-logic QF_FP)
(declare-const x (_ FloatingPoint 2 2))
(declare-const y (_ FloatingPoint 2 2))
(assert (fp.lt (fp #b0 #b00 #b1) x y ((_ to_fp 2 2) RNE 1.5)))
(set-info :status unsat)
(check-sat)
