; expect: 3:11: expected '(' to open the terms, got ')'
(check-sat)
(get-value)
