; expect: 3:18: fp.div takes no indices, got 2
(declare-const x Float32)
(assert (= x ((_ fp.div 8 24) RNE x x)))
