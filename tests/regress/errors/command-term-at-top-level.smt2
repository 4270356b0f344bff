; expect: 2:2: unknown command 'and'
(and true true)
