; expect: 4:6: '#b012' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #b012 p))
