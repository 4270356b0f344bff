; expect: 4:10: ite takes 3 arguments, got 2
(declare-const p Bool)
(declare-const q Bool)
(assert (ite p q))
