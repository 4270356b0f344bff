; expect: 4:11: expected ')' to close the command, got 'q'
(declare-const p Bool)
(declare-const q Bool)
(assert p q)
