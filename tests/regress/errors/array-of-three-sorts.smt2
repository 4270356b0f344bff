; expect: 2:24: Array takes 2 sorts, got 3
(define-sort Id (X Y) (Array X Y Bool))
