; expect: 4:6: '0x1f' is neither a literal nor a symbol
(declare-const p Bool)
(assert
  (= 0x1f p))
