; Choices between products are equal where they are in each case.
(set-logic QF_BV)
(declare-const p Bool)
(declare-const x (_ BitVec 5))
(declare-const y (_ BitVec 5))
(declare-const z (_ BitVec 5))
(assert (or
  (not (= (bvmul x (ite (= y z) y #b00010)) (ite (= z y) (bvmul z x) (bvadd x x))))
  (not (= (bvmul x (ite p y z)) (ite p (bvmul y x) (bvmul z x))))
  (not (= (bvsub (ite p (bvmul x y) z) (ite p x z)) (ite p (bvmul x (bvsub y #b00001)) #b00000)))
))
(set-info :status unsat)
(check-sat)
