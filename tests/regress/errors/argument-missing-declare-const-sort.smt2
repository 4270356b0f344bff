; expect: 2:17: expected a sort, got ')'
(declare-const f)
