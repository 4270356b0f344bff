; expect: 2:2: unknown command 'let'
(let ((t true)) t)
