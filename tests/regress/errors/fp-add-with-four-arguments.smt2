; expect: 3:15: fp.add takes 3 arguments, got 4
(declare-const x Float32)
(assert (= x (fp.add RNE x x x)))
