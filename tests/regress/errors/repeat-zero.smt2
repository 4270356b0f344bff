; expect: 3:18: repeat: the count must be at least 1, got 0
(declare-const a (_ BitVec 8))
(assert (= a ((_ repeat 0) a)))
