; expect: 5:17: unknown sort 'U'
(push 1)
(declare-sort U 0)
(pop 1)
(declare-fun f (U) Bool)
