; expect: 3:15: fp: the sign takes 1 bit and the exponent at least 2, got 2 and 5
(declare-const h Float16)
(assert (= h (fp #b00 #b00000 #b000000000)))
