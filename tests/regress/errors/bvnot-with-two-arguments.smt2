; expect: 3:15: bvnot takes 1 argument, got 2
(declare-const a (_ BitVec 8))
(assert (= a (bvnot a a)))
