; expect: 2:14: the sort 'Array' is already defined
(define-sort Array (X) X)
