; expect: 3:15: bvshl takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (= a (bvshl a a a)))
