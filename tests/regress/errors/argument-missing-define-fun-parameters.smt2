; expect: 2:15: expected '(' to open the parameters, got 'Bool'
(define-fun f Bool true)
