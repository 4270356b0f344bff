; expect: 3:23: 't' is no function: it stands without parentheses
(declare-const p Bool)
(assert (let ((t p)) (t p)))
