; Divisions that differ in the signs of their operands are one of chosen operands.
(set-logic QF_BV)
(declare-const p Bool)
(declare-const q Bool)
(declare-const x (_ BitVec 5))
(declare-const y (_ BitVec 5))
(declare-const z (_ BitVec 5))
(assert (or
  (not (= (ite p (bvurem (bvneg x) y) (bvneg (bvurem x (bvneg y)))) (let ((r (bvurem (ite p (bvneg x) x) (ite p y (bvneg y))))) (ite p r (bvneg r)))))
  (not (= (ite (and p q) (bvudiv x y) (ite (or p q) (bvneg (bvudiv (bvneg x) y)) (bvadd z (bvudiv x y)))) (let ((r (bvudiv (ite p (ite q x (bvneg x)) (ite q (bvneg x) x)) y))) (ite p (ite q r (bvneg r)) (ite q (bvneg r) (bvadd z r))))))
))
(set-info :status unsat)
(check-sat)
