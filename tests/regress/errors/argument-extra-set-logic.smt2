; expect: 2:18: expected ')' to close the command, got 'QF_BV'
(set-logic QF_FP QF_BV)
