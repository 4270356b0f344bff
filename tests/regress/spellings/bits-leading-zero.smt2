; strict: 2:22: the number in bv007 begins with a needless zero
(assert (distinct (_ bv007 8) #x07))
(set-info :status unsat)
(check-sat)
