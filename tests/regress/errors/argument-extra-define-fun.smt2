; expect: 2:28: expected ')' to close the command, got 'false'
(define-fun f () Bool true false)
