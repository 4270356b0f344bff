; expect: 3:16: expected the name of a binding, but 'let' is a reserved word
(declare-const p Bool)
(assert (let ((let p)) p))
