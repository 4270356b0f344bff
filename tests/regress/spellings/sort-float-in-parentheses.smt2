; strict: 2:20: the sort Float64 stands without parentheses
(declare-fun x () (Float64))
(declare-fun r () (RoundingMode))
(set-info :status sat)
(check-sat)
