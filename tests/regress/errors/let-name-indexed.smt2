; expect: 3:25: 't' takes no indices
(declare-const p Bool)
(assert (let ((t p)) (_ t 1)))
