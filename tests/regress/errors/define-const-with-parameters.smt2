; expect: 2:18: expected the name of a sort, got ')'
(define-const f () Bool true)
