; expect: 3:21: the sort U takes no indices
(declare-sort U 0)
(declare-const u (_ U 1))
