; expect: 2:2: unknown command 'checksat'
(checksat)
