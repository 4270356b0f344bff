; expect: 6:2: get-value: there is no model, the last answer is not sat
(declare-const p Bool)
(push)
(check-sat)
(pop)
(get-value (p))
