; expect: 2:20: expected '(' to open the assumptions, got ')'
(check-sat-assuming)
