; expect: 2:2: define-fun-rec is not supported
(define-fun-rec f ((n Bool)) Bool (f n))
