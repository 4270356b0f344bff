; expect: 3:16: 'f' is already declared
(declare-const f Bool)
(declare-const f Bool)
