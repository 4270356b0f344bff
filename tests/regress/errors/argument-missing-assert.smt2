; expect: 2:8: expected a term, got ')'
(assert)
