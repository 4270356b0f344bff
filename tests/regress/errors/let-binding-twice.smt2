; expect: 4:22: 't' is bound twice
(declare-const p Bool)
(declare-const q Bool)
(assert (let ((t p) (t q)) t))
