; expect: 3:13: f takes 1 argument, got 0
(declare-fun f (Bool) Bool)
(assert (as f Bool))
