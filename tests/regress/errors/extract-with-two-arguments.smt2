; expect: 4:18: extract takes 1 argument, got 2
(declare-const a (_ BitVec 8))
(declare-const b (_ BitVec 8))
(assert (= a ((_ extract 7 0) a b)))
