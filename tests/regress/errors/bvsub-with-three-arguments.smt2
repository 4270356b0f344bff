; expect: 3:15: bvsub takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (= a (bvsub a a a)))
