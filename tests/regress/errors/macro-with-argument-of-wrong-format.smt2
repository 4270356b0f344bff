; expect: 4:10: f: argument 1 must be of (_ FloatingPoint 8 24), got a term of (_ FloatingPoint 11 53)
(declare-const z Float64)
(define-fun f ((u Float32) (v Bool)) Bool (and v (fp.isNaN u)))
(assert (f z true))
