; expect: 2:18: Array takes 2 sorts, got 0
(declare-const a Array)
