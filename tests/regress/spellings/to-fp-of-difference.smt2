; strict: 2:40: numbers are put together by - of one argument and / of two only
(assert (fp.isNaN ((_ to_fp 8 24) RNE (- 3 2))))
(set-info :status unsat)
(check-sat)
