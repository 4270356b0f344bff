; expect: 3:21: expected a term, got ')'
(declare-const p Bool)
(assert (let ((t p))))
