; expect: 4:6: '1.0f' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= 1.0f p))
