; strict: 2:43: '-3' is a symbol; a negative number is written (- 3)
(assert (distinct ((_ to_fp 8 24) RTP 1.0 -3) (fp #b0 #x7c #b00000000000000000000000)))
(set-info :status unsat)
(check-sat)
