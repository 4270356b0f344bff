; expect: 2:14: expected a symbol, but 'as' is a reserved word
(define-sort as () Bool)
