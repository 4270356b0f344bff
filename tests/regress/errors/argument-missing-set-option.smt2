; expect: 2:12: expected an option, got ')'
(set-option)
