; expect: 3:10: bvule takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (bvule a a a))
