; expect: 3:9: expected a term, got ':p'
(declare-const p Bool)
(assert :p)
