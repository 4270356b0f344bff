; expect: 2:21: BitVec takes 1 index, got 2
(declare-const f (_ BitVec 4 4))
