; expect: 4:28: 't' is bound twice
(declare-const p Bool)
(declare-const q Bool)
(assert (let ((t p) (u p) (|t| q)) t))
