; expect: 2:16: expected '(' to open the parameters, got 'Bool'
(define-sort S Bool)
