; strict: 3:10: distinct takes at least 2 arguments, got 1
(declare-const p Bool)
(assert (distinct p))
(set-info :status sat)
(check-sat)
