; expect: 4:6: '#b' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #b p))
