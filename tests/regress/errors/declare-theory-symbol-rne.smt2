; expect: 2:16: 'RNE' is a symbol of the theory and cannot be declared
(declare-const RNE Bool)
