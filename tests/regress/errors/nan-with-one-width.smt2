; expect: 3:17: NaN takes 2 indices, got 1
(declare-const x Float32)
(assert (= x (_ NaN 32)))
