; expect: 2:19: Array takes 2 sorts, got 0
(declare-const a (Array))
