; expect: 3:10: xor: expected a Bool, got a term of RoundingMode
(declare-const p Bool)
(assert (xor p RNE))
