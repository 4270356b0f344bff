; expect: 3:21: expected a symbol, got '1'
(declare-const p Bool)
(assert (! p :named 1))
