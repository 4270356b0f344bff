; expect: 2:22: 'X' is bound twice
(define-sort Pair (X X) X)
