; expect: 2:10: expected a keyword, got ')'
(set-info)
