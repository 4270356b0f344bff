; expect: 4:15: unknown symbol 'q'
(declare-const p Bool)
(check-sat)
(get-value (p q))
