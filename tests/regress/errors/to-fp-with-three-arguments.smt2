; expect: 3:23: to_fp takes 1 or 2 arguments, got 3
(declare-const x Float32)
(assert (fp.isNaN ((_ to_fp 8 24) RNE x x)))
