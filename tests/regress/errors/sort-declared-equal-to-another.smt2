; expect: 6:10: =: operands of different sorts, U and V
(declare-sort U 0)
(declare-sort V 0)
(declare-const u U)
(declare-const v V)
(assert (= u v))
