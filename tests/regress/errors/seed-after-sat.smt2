; expect: 6:2: get-value: there is no model, the last answer is not sat
(declare-const p Bool)
(assert p)
(check-sat)
(set-option :random-seed 3)
(get-value (p))
