; expect: 3:13: not takes no indices, got 1
(declare-const p Bool)
(assert ((_ not 1) p))
