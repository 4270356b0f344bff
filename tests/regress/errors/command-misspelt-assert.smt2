; expect: 2:2: unknown command 'asert'
(asert true)
