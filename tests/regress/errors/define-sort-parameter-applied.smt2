; expect: 2:22: the sort X takes no sorts as arguments
(define-sort Id (X) (X Bool))
