; expect: 2:37: unknown symbol 'f'
(define-fun f ((u Bool)) Bool (not (f u)))
