; expect: 2:18: expected a sort, got ')'
(define-fun f ((u)) Bool u)
