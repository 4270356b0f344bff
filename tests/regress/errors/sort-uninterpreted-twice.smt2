; expect: 3:15: the sort 'U' is already defined
(declare-sort U 0)
(declare-sort U 0)
