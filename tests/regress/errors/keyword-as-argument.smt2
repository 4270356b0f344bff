; expect: 3:16: expected a term, got ':named'
(declare-const p Bool)
(assert (and p :named q))
