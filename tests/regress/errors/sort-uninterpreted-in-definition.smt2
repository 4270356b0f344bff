; expect: 3:21: the sort U is declared and has no definition: such sorts are not supported
(declare-sort U 0)
(define-sort Val () U)
