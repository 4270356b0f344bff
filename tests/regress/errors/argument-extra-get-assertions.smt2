; expect: 2:17: expected ')' to close the command, got 'now'
(get-assertions now)
