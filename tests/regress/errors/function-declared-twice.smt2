; expect: 3:14: 'f' is already declared
(declare-fun f (Bool) Bool)
(declare-fun f (Float16) Bool)
