; expect: 4:1: expected ')' to close the command, got '('
(declare-const p Bool)
(assert (not p)
(check-sat)
