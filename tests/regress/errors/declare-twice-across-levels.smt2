; expect: 4:16: 'f' is already declared
(declare-const f Bool)
(push)
(declare-const f Bool)
