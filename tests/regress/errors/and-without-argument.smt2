; expect: 2:10: and takes at least 1 argument, got 0
(assert (and))
