; expect: 3:15: bvudiv takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (= a (bvudiv a a a)))
