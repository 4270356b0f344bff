; expect: 3:15: expected '(' to open a binding, got 't'
(declare-const p Bool)
(assert (let (t p) t))
