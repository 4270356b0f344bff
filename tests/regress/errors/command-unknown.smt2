; expect: 2:2: unknown command 'prove'
(prove true)
