; expect: 5:21: 'f' is already declared
(declare-const p Bool)
(declare-const q Bool)
(assert (! p :named f))
(assert (! q :named f))
