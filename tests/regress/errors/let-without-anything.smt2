; expect: 2:13: expected '(' to open the bindings, got ')'
(assert (let))
