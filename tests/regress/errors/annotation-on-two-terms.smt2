; expect: 4:14: expected an attribute, got 'q'
(declare-const p Bool)
(declare-const q Bool)
(assert (! p q :named f))
