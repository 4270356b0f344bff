; expect: 4:13: f takes 1 argument, got 0
(define-fun f ((v Bool)) Bool v)
(check-sat)
(get-value (f))
