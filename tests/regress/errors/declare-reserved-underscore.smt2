; expect: 2:14: expected a symbol, but '_' is a reserved word
(declare-fun _ () Bool)
