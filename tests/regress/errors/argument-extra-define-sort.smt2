; expect: 2:24: expected ')' to close the command, got 'Bool'
(define-sort S () Bool Bool)
