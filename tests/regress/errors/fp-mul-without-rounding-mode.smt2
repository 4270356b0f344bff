; expect: 3:15: fp.mul takes 3 arguments, got 2
(declare-const x Float32)
(assert (= x (fp.mul x x)))
