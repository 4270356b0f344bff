; expect: 3:9: f takes 1 argument, got 0
(declare-fun f (Bool) Bool)
(assert f)
