; expect: 2:27: expected true or false, got ')'
(set-option :print-success)
