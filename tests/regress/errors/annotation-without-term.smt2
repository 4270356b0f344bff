; expect: 2:11: expected a term, got ')'
(assert (!))
