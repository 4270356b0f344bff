; expect: 2:19: the sort Float64 takes no sorts as arguments
(declare-const f (Float64 RoundingMode))
