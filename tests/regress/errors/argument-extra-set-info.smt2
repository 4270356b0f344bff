; expect: 2:23: expected ')' to close the command, got 'unsat'
(set-info :status sat unsat)
