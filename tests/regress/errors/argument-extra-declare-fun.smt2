; expect: 2:24: expected ')' to close the command, got 'true'
(declare-fun f () Bool true)
