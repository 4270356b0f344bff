; expect: 3:9: unknown symbol 'u'
(define-fun f ((u Bool)) Bool u)
(assert u)
