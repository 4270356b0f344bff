; expect: 2:19: expected the name of a sort, got ')'
(declare-const f ())
