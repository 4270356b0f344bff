; expect: 2:6: expected a string, got ')'
(echo)
