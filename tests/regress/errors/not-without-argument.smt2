; expect: 2:10: not takes 1 argument, got 0
(assert (not))
