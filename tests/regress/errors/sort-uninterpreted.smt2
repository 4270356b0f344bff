; expect: 3:18: the sort U is declared and has no definition: such sorts are not supported
(declare-sort U 0)
(declare-const u U)
