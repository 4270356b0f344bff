; expect: 3:14: NaN takes 2 indices, got 0
(declare-const x Float32)
(assert (= x NaN))
