; expect: 2:13: unknown symbol 'p'
(assert (as p Bool))
