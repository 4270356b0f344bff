; strict: 2:39: the number 01.0 begins with a needless zero
(assert (distinct ((_ to_fp 8 24) RNE 01.0) (fp #b0 #x7f #b00000000000000000000000)))
(set-info :status unsat)
(check-sat)
