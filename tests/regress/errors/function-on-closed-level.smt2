; expect: 5:10: unknown symbol 'f'
(push 1)
(declare-fun f (Bool) Bool)
(pop 1)
(assert (f true))
