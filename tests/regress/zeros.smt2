; The zeros are equal as numbers and different as terms.
(set-logic QF_FP)
(assert (fp.eq (_ +zero 5 11) (_ -zero 5 11)))
(assert (= (_ -zero 5 11) (fp.neg (_ +zero 5 11))))
(set-info :status sat)
(check-sat)
(assert (= (_ +zero 5 11) (_ -zero 5 11)))
(set-info :status unsat)
(check-sat)
