; strict: 3:10: or takes at least 2 arguments, got 1
(declare-const p Bool)
(assert (or p))
(set-info :status sat)
(check-sat)
