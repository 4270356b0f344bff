; expect: 4:18: extract takes 2 indices, got 1
(declare-const a (_ BitVec 8))
(declare-const s (_ BitVec 1))
(assert (= s ((_ extract 3) a)))
