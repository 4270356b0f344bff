; expect: 2:10: or takes at least 1 argument, got 0
(assert (or))
