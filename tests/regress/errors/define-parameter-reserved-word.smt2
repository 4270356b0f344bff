; expect: 2:17: expected a parameter, but 'match' is a reserved word
(define-fun f ((match Bool)) Bool true)
