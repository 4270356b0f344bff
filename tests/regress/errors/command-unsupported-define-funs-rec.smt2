; expect: 2:2: define-funs-rec is not supported
(define-funs-rec ((f ((n Bool)) Bool)) ((f n)))
