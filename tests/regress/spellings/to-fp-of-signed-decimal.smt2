; strict: 2:39: '-1.5' is a symbol; a negative number is written (- 1.5)
(assert (fp.isNaN ((_ to_fp 8 24) RNE -1.5)))
(set-info :status unsat)
(check-sat)
