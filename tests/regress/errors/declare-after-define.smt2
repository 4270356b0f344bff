; expect: 3:16: 'f' is already declared
(define-fun f () Bool true)
(declare-const f Bool)
