; expect: 3:10: f takes 1 argument, got 2
(declare-fun f (Bool) Bool)
(assert (f true true))
