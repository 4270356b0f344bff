; expect: 3:10: bvuge takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (bvuge a a a))
