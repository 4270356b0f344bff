; expect: 2:17: expected ')' to close the command, got '1'
(get-unsat-core 1)
