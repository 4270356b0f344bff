; expect: 3:16: expected the name of a binding, got '1'
(declare-const p Bool)
(assert (let ((1 p)) p))
