; expect: 2:13: 'fp.neg' is a symbol of the theory and cannot be declared
(define-fun fp.neg ((u Float32)) Float32 u)
