; What is less than zero has the top bit.
(set-logic QF_BV)
(declare-const x (_ BitVec 32))
(assert (or
  (not (= (bvslt x #x00000000) (= ((_ extract 31 31) x) #b1)))
  (not (= (bvsle #x00000000 x) (not (= ((_ extract 31 31) x) #b1))))
))
(set-info :status unsat)
(check-sat)
