; expect: 4:6: '1.' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= 1. p))
