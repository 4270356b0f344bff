; expect: 3:15: fp.div takes 3 arguments, got 2
(declare-const x Float32)
(assert (= x (fp.div x x)))
