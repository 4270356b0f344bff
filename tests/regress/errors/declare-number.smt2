; expect: 2:16: expected a symbol, got '1'
(declare-const 1 Bool)
