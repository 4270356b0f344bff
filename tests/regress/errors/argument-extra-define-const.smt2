; expect: 2:27: expected ')' to close the command, got 'false'
(define-const f Bool true false)
