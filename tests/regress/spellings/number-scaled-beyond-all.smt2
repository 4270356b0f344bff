; strict: 2:23: to_fp takes 1 or 2 arguments, got 3
(assert (distinct ((_ to_fp 8 24) RTZ 0.5 1000000000000) (fp #b0 #xfe #b11111111111111111111111)))
(set-info :status unsat)
(check-sat)
