; expect: 2:19: expected ')' to close the command, got 'now'
(reset-assertions now)
