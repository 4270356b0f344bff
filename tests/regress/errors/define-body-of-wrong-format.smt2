; expect: 2:37: the definition of 'f' must be of (_ FloatingPoint 8 24), got a term of (_ FloatingPoint 11 53)
(define-fun f ((v Float32)) Float32 ((_ to_fp 11 53) RNE v))
