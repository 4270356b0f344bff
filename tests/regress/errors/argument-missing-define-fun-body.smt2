; expect: 2:22: expected a term, got ')'
(define-fun f () Bool)
