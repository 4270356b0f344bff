; expect: 3:15: expected '(' to open a binding, got ')'
(declare-const p Bool)
(assert (let () p))
