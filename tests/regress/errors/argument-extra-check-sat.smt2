; expect: 2:12: expected ')' to close the command, got 'now'
(check-sat now)
