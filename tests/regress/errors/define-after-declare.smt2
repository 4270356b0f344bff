; expect: 3:13: 'p' is already declared
(declare-const p Bool)
(define-fun p () Bool true)
