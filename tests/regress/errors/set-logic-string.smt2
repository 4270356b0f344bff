; expect: 2:12: expected the name of a logic, got '"QF_FP"'
(set-logic "QF_FP")
