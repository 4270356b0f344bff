; expect: 3:12: 'p' takes no indices
(declare-const p Bool)
(assert (_ p 1))
