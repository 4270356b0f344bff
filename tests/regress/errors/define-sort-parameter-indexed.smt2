; expect: 2:24: the sort X takes no indices
(define-sort Id (X) (_ X 8))
