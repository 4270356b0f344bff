; expect: 2:16: expected a symbol, got '('
(declare-const (f g) Bool)
