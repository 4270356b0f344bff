; expect: 2:19: unknown sort 'Double'
(define-fun f ((u Double)) Bool true)
