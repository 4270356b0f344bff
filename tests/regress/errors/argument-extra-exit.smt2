; expect: 2:7: expected ')' to close the command, got 'now'
(exit now)
