; expect: 2:16: 'and' is a symbol of the theory and cannot be declared
(declare-const and Bool)
