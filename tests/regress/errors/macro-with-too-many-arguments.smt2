; expect: 4:10: f takes 2 arguments, got 3
(declare-const x Float32)
(define-fun f ((u Float32) (v Bool)) Bool (and v (fp.isNaN u)))
(assert (f x true false))
