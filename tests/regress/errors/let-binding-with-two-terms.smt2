; expect: 4:20: expected ')' to close the binding, got 'q'
(declare-const p Bool)
(declare-const q Bool)
(assert (let ((t p q)) t))
