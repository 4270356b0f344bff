; expect: 4:6: '#q10' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= #q10 p))
