; expect: 3:15: fp.neg takes 1 argument, got 2
(declare-const x Float32)
(assert (= x (fp.neg RNE x)))
