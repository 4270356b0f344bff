; expect: 4:6: '#B101' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #B101 p))
