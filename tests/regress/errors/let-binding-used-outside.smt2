; expect: 3:30: unknown symbol 't'
(declare-const p Bool)
(assert (and (let ((t p)) t) t))
