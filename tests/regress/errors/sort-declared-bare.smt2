; expect: 3:18: List takes 1 sort, got 0
(declare-sort List 1)
(declare-const u List)
