; expect: 4:25: expected ')' to close the command, got '('
(declare-const p Bool)
(declare-const q Bool)
(check-sat-assuming (p) (q))
