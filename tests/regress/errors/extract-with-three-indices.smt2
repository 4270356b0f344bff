; expect: 3:18: extract takes 2 indices, got 3
(declare-const a (_ BitVec 8))
(assert (= a ((_ extract 7 0 0) a)))
