; expect: 3:19: Second takes 2 sorts, got 1
(define-sort Second (X Y) Y)
(declare-const f (Second Bool))
