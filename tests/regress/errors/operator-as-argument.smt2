; expect: 3:15: not takes 1 argument, got 0
(declare-const p Bool)
(assert (or p not))
