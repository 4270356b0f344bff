; A number divided by itself.
(set-logic QF_BV)
(declare-const x (_ BitVec 16))
(assert (or
  (not (= (bvurem x x) #x0000))
  (not (= (bvudiv x x) (ite (= x #x0000) #xffff #x0001)))
))
(set-info :status unsat)
(check-sat)
