; expect: 3:19: Id takes 1 sort, got 2
(define-sort Id (X) X)
(declare-const f (Id Bool Bool))
