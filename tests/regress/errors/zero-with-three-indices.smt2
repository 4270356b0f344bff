; expect: 3:17: +zero takes 2 indices, got 3
(declare-const x Float32)
(assert (= x (_ +zero 8 24 0)))
