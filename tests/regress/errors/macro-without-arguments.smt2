; expect: 3:9: f takes 2 arguments, got 0
(define-fun f ((u Float32) (v Bool)) Bool (and v (fp.isNaN u)))
(assert f)
