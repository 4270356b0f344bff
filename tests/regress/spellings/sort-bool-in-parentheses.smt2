; strict: 2:19: the sort Bool stands without parentheses
(declare-const f (Bool))
(set-info :status sat)
(check-sat)
