; expect: 2:23: expected ')' to close the command, got 'Bool'
(declare-const f Bool Bool)
