; expect: 2:9: expected ')' to close the command, got '2'
(push 1 2)
