; expect: 4:12: expected '(' to open the terms, got 'p'
(declare-const p Bool)
(check-sat)
(get-value p)
