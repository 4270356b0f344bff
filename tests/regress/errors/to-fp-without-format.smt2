; expect: 3:20: to_fp takes 2 indices, got 0
(declare-const x Float32)
(assert (fp.isNaN (to_fp RNE x)))
