(assert (fp.lt ((_ to_fp 20 2) RNE 1.5) ((_ to_fp 20 2) RTP 3.0)))
(assert (fp.lt ((_ to_fp 2 1000) RTP (/ 1 7)) ((_ to_fp 2 1000) RTN (/ 2 7))))
(check-sat)
