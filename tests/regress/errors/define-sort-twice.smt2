; expect: 3:14: the sort 'W' is already defined
(define-sort W () Bool)
(define-sort W () Float32)
