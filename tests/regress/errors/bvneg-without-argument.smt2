; expect: 3:15: bvneg takes 1 argument, got 0
(declare-const a (_ BitVec 8))
(assert (= a (bvneg)))
