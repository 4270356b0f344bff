; expect: 2:16: expected a symbol, but 'let' is a reserved word
(declare-const let Bool)
