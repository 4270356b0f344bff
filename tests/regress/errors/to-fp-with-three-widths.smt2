; expect: 3:23: to_fp takes 2 indices, got 3
(declare-const x Float32)
(assert (fp.isNaN ((_ to_fp 1 8 23) RNE x)))
