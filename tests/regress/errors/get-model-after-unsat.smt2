; expect: 4:2: get-model: there is no model, the last answer is not sat
(assert false)
(check-sat)
(get-model)
