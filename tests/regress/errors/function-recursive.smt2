; expect: 2:45: unknown symbol 'f'
(define-fun f ((a (Array Bool Bool))) Bool (f a))
