; expect: 2:14: expected a symbol, got '('
(declare-fun () Bool)
