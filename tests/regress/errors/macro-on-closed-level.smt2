; expect: 6:10: unknown symbol 'f'
(declare-const x Float32)
(push)
(define-fun f ((u Float32) (v Bool)) Bool (and v (fp.isNaN u)))
(pop)
(assert (f x true))
