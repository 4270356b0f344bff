; expect: 3:19: List takes 1 sort, got 2
(declare-sort List 1)
(declare-const u (List Bool Bool))
