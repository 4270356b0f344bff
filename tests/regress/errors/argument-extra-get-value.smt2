; expect: 4:16: expected ')' to close the command, got '('
(declare-const p Bool)
(check-sat)
(get-value (p) (p))
