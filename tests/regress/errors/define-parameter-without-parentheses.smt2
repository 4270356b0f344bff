; expect: 2:16: expected '(' to open a parameter, got 'u'
(define-fun f (u Bool) Bool u)
