; expect: 3:23: the definition of 'f' must be of Bool, got a term of (_ FloatingPoint 8 24)
(declare-const x Float32)
(define-fun f () Bool x)
