; expect: 4:6: '#b1#b0' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #b1#b0 p))
