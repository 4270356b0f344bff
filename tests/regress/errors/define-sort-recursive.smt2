; expect: 2:20: unknown sort 'S'
(define-sort S () (S))
