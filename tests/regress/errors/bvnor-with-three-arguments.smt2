; expect: 3:15: bvnor takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (= a (bvnor a a a)))
