; expect: 2:16: 'bvadd' is a symbol of the theory and cannot be declared
(declare-const bvadd Bool)
