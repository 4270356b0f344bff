; expect: 4:13: 'f' takes no indices
(declare-const x Float32)
(define-fun f ((u Float32) (v Bool)) Bool (and v (fp.isNaN u)))
(assert ((_ f 1) x true))
