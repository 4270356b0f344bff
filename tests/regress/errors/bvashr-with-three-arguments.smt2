; expect: 3:15: bvashr takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (= a (bvashr a a a)))
