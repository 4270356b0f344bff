; expect: 2:15: expected a symbol, got ')'
(declare-const)
