; expect: 4:6: '2x' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= 2x p))
