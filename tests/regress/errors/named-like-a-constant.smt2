; expect: 4:21: 'q' is already declared
(declare-const p Bool)
(declare-const q Bool)
(assert (! p :named q))
