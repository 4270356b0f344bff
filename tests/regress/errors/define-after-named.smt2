; expect: 4:15: 'f' is already declared
(declare-const p Bool)
(assert (! p :named f))
(define-const f Bool true)
