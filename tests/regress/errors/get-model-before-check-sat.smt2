; expect: 3:2: get-model: there is no model, the last answer is not sat
(declare-const p Bool)
(get-model)
