; expect: 3:8: expected ')' to close the command, got '1'
(push)
(pop 1 1)
