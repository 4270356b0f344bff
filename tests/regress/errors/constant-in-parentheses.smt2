; expect: 3:10: 'p' is no function: it stands without parentheses
(declare-const p Bool)
(assert (p))
