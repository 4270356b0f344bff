; expect: 2:13: expected a symbol, but '!' is a reserved word
(define-fun ! () Bool true)
