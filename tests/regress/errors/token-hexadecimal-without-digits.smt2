; expect: 4:6: '#x' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #x p))
