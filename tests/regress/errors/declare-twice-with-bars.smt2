; expect: 3:14: 'f' is already declared
(declare-const f Bool)
(declare-fun |f| () Float32)
