; expect: 2:21: BitVec takes 1 index, got 0
(declare-const f (_ BitVec))
