; expect: 2:20: expected the name of a sort, got ')'
(declare-const f (_))
