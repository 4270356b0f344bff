; expect: 3:15: NaN takes 2 indices, got 0
(declare-const x Float32)
(assert (= x (NaN 8 24)))
