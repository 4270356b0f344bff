; expect: 2:9: expected a term, got 'let'
(assert let)
