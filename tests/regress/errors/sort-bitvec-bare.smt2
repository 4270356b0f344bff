; expect: 2:18: BitVec takes 1 index, got 0
(declare-const f BitVec)
