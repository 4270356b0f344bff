; expect: 2:18: expected a sort, got ')'
(declare-fun f ())
