; expect: 3:18: bvneg takes no indices, got 1
(declare-const a (_ BitVec 8))
(assert (= a ((_ bvneg 8) a)))
