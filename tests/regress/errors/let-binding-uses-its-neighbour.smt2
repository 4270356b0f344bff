; expect: 3:24: unknown symbol 't'
(declare-const p Bool)
(assert (let ((t p) (u t)) u))
