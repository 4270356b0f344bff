; expect: 2:9: select takes 2 arguments, got 0
(assert select)
