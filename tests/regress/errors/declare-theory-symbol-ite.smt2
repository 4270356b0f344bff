; expect: 2:16: 'ite' is a symbol of the theory and cannot be declared
(declare-const ite Bool)
