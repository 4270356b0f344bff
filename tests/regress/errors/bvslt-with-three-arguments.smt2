; expect: 3:10: bvslt takes 2 arguments, got 3
(declare-const a (_ BitVec 8))
(assert (bvslt a a a))
