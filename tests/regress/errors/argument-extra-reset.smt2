; expect: 2:8: expected ')' to close the command, got 'now'
(reset now)
