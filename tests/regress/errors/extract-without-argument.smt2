; expect: 3:17: extract takes 1 argument, got 0
(declare-const a (_ BitVec 8))
(assert (= a (_ extract 7 0)))
