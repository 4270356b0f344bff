; expect: 2:10: expected the name of a function, got ')'
(assert ())
