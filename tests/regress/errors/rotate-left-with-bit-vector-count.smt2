; expect: 3:15: rotate_left takes 1 index, got 0
(declare-const a (_ BitVec 8))
(assert (= a (rotate_left a a)))
