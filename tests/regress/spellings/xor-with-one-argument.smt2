; strict: 3:10: xor takes at least 2 arguments, got 1
(declare-const p Bool)
(assert (xor p))
(set-info :status sat)
(check-sat)
