; strict: 2:40: numbers are put together by - of one argument and / of two only
(assert (distinct ((_ to_fp 8 24) RNE (+ 1)) (fp #b0 #x7f #b00000000000000000000000)))
(set-info :status unsat)
(check-sat)
