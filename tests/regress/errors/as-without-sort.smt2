; expect: 3:14: expected a sort, got ')'
(declare-const p Bool)
(assert (as p))
