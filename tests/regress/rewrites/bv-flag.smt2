; A bit is 0 or 1, and a choice between numbers tells its condition.
(set-logic QF_BV)
(declare-const p Bool)
(declare-const x (_ BitVec 1))
(assert (or
  (not (= (= x #b0) (not (= x #b1))))
  (not (= (= (bvnot x) #b1) (not (= x #b1))))
  (not (= (= (bvnot x) #b0) (not (= x #b0))))
  (not (= (= (ite p #b01 #b10) #b01) p))
  (not (= (= (ite p #b01 #b10) #b10) (not p)))
  (not (= (= (ite p #b01 #b10) #b11) false))
))
(set-info :status unsat)
(check-sat)
