; expect: 4:10: not takes 1 argument, got 2
(declare-const p Bool)
(declare-const q Bool)
(assert (not p q))
