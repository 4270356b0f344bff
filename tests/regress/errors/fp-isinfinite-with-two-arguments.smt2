; expect: 3:10: fp.isInfinite takes 1 argument, got 2
(declare-const x Float32)
(assert (fp.isInfinite x x))
