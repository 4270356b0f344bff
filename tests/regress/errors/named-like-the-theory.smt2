; expect: 3:21: 'or' is a symbol of the theory and cannot be declared
(declare-const p Bool)
(assert (! p :named or))
