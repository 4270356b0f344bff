; expect: 2:26: 'u' is bound twice
(define-fun f ((u Bool) (u Float32)) Bool u)
