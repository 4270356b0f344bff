; expect: 3:15: bvsrem takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (= a (bvsrem a a a)))
