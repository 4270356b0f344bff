; expect: 3:10: fp.isNaN takes 1 argument, got 2
(declare-const x Float32)
(assert (fp.isNaN x x))
