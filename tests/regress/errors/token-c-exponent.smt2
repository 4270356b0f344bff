; expect: 4:6: '1.5e10' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= 1.5e10 p))
