; expect: 3:24: expected ')' to close the let, got 't'
(declare-const p Bool)
(assert (let ((t p)) t t))
