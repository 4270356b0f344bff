; expect: 3:10: bvsgt takes 2 arguments, got 1
(declare-const a (_ BitVec 8))
(assert (bvsgt a))
