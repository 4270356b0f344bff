; expect: 3:18: Second takes 2 sorts, got 0
(define-sort Second (X Y) Y)
(declare-const f Second)
