; expect: 2:7: expected a string, got 'done'
(echo done)
