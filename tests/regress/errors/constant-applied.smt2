; expect: 4:10: 'p' is no function: it stands without parentheses
(declare-const p Bool)
(declare-const q Bool)
(assert (p q))
