; expect: 3:15: repeat takes 1 index, got 0
(declare-const a (_ BitVec 8))
(assert (= a (repeat a)))
