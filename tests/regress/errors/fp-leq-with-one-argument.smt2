; expect: 3:10: fp.leq takes at least 2 arguments, got 1
(declare-const x Float32)
(assert (fp.leq x))
