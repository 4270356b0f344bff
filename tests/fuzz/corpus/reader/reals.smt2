(declare-const r RoundingMode)
(assert (distinct ((_ to_fp 5 11) r 0.1) ((_ to_fp 5 11) RTP (- 0.1)) ((_ to_fp 5 11) RNA (/ 1 3))
  ((_ to_fp 5 11) RTZ (- (/ (- 2) 3.0))) ((_ to_fp 5 11) RTN 100000) ((_ to_fp 5 11) RNE 0.0)))
(check-sat)
