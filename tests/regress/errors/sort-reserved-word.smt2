; expect: 2:18: expected a sort, got 'let'
(declare-const f let)
