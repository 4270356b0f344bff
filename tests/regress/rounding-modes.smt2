; Of five rounding modes four can be told apart from a given one.
(set-logic QF_FP)
(declare-const r RoundingMode)
(declare-const q RoundingMode)
(assert (distinct r q RNE))
(assert (= q (ite (= r RTZ) RTP RTZ)))
(set-info :status sat)
(check-sat)
