; expect: 4:10: f: argument 2 must be of Bool, got a term of (_ FloatingPoint 8 24)
(declare-const x Float32)
(define-fun f ((u Float32) (v Bool)) Bool (and v (fp.isNaN u)))
(assert (f x x))
