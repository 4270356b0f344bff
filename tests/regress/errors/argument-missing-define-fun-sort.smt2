; expect: 2:18: unknown sort 'true'
(define-fun f () true)
