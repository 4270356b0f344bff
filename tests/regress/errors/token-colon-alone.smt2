; expect: 4:6: ':' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= : p))
