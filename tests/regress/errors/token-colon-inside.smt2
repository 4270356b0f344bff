; expect: 4:6: 'x:y' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= x:y p))
