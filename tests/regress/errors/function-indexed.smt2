; expect: 3:13: 'f' takes no indices
(declare-fun f (Bool) Bool)
(assert ((_ f 1) true))
