; expect: 2:11: expected the name of a logic, got ')'
(set-logic)
