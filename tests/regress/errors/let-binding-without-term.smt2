; expect: 2:17: expected a term, got ')'
(assert (let ((t)) t))
