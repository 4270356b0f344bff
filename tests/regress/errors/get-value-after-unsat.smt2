; expect: 5:2: get-value: there is no model, the last answer is not sat
(declare-const p Bool)
(assert (not p))
(check-sat-assuming (p))
(get-value (p))
