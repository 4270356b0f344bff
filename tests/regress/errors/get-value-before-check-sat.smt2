; expect: 3:2: get-value: there is no model, the last answer is not sat
(declare-const p Bool)
(get-value (p))
