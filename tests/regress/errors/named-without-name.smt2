; expect: 3:20: expected a symbol, got ')'
(declare-const p Bool)
(assert (! p :named))
