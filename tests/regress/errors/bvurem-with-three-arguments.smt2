; expect: 3:15: bvurem takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (= a (bvurem a a a)))
