; strict: 2:23: to_fp takes 1 or 2 arguments, got 3
(assert (distinct ((_ to_fp 8 24) RNE 0.5 1) (fp #b0 #x7f #b00000000000000000000000)))
(set-info :status unsat)
(check-sat)
