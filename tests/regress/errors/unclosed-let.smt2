; expect: 3:14: this '(' is never closed
(declare-const p Bool)
(assert (let ((t p)
