; strict: 3:10: = takes at least 2 arguments, got 1
(declare-const p Bool)
(assert (= p))
(set-info :status sat)
(check-sat)
