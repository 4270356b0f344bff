; strict: 3:10: and takes at least 2 arguments, got 1
(declare-const p Bool)
(assert (and p))
(set-info :status sat)
(check-sat)
