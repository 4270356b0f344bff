; expect: 2:18: expected a parameter, got '('
(define-sort Id ((X Bool)) X)
