; expect: 3:15: fp takes 3 arguments, got 4
(declare-const h Float16)
(assert (= h (fp #b0 #b00000 #b0000000000 RNE)))
