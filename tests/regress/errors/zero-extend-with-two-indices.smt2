; expect: 4:18: zero_extend takes 1 index, got 2
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(assert (= a ((_ zero_extend 4 4) c)))
