; expect: 2:24: expected ')' to close the parameter, got 'Bool'
(define-fun f ((u Bool Bool)) Bool u)
