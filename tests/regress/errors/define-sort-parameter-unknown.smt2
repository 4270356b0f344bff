; expect: 2:25: unknown sort 'Z'
(define-sort Pair (X Y) Z)
