; expect: 3:10: =: operands of different sorts, (_ FloatingPoint 5 11) and (_ FloatingPoint 8 11)
(declare-const h Float16)
(assert (= h (fp #b0 #x00 #b0000000000)))
