; One bit of many: the reductions, the choice by one bit, and laws that tie them to other operations.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 13))
(declare-const y (_ BitVec 13))
(declare-const c (_ BitVec 1))
(assert (or
  (distinct (bvredor x) (bvnot (bvcomp x #b0000000000000)))
  (distinct (bvredand x) (bvnot (bvredor (bvnot x))))
  (distinct (bvredxor (bvxor x y)) (bvxor (bvredxor x) (bvredxor y)))
  (distinct (bvredxor ((_ extract 12 12) x)) ((_ extract 12 12) x))
  (distinct (bvite c x y) (ite (= c #b1) x y))
  (distinct (bvite (bvnot c) x y) (bvite c y x))))
(check-sat)
