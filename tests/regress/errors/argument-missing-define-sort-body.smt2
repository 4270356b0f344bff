; expect: 2:18: expected a sort, got ')'
(define-sort S ())
