; expect: 4:6: '#o17' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #o17 p))
