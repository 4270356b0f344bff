; expect: 4:15: zero_extend takes 1 index, got 0
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(assert (= a (zero_extend c)))
