; expect: 3:15: extract takes 2 indices, got 0
(declare-const a (_ BitVec 8))
(assert (= a (extract 7 0 a)))
