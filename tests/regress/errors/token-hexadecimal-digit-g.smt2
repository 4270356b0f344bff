; expect: 4:6: '#xfg' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #xfg p))
