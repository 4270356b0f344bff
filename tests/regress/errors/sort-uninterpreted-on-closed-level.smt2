; expect: 5:18: unknown sort 'U'
(push 1)
(declare-sort U 0)
(pop 1)
(declare-const u U)
