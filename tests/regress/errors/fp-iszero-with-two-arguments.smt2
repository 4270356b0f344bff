; expect: 3:10: fp.isZero takes 1 argument, got 2
(declare-const x Float32)
(assert (fp.isZero x x))
