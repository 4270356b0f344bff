; expect: 3:13: expected a term, got ')'
(check-sat)
(get-value ())
