; expect: 2:14: the sort 'Float32' is already defined
(define-sort Float32 () (_ FloatingPoint 8 24))
