; expect: 3:43: the sort S takes no sorts as arguments
(declare-sort S 1)
(define-sort T (S) S) (define-sort U (S) (S Bool))
