; expect: 2:2: unknown command 'simplify'
(simplify true)
