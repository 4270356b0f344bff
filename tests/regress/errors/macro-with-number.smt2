; expect: 3:10: f: argument 1 must be of (_ FloatingPoint 8 24), got a number
(define-fun f ((u Float32) (v Bool)) Bool (and v (fp.isNaN u)))
(assert (f 0.5 true))
