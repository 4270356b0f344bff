; expect: 3:19: U takes no sorts, got 1
(declare-sort U 0)
(declare-const u (U Bool))
