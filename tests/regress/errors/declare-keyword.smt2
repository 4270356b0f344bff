; expect: 2:16: expected a symbol, got ':f'
(declare-const :f Bool)
