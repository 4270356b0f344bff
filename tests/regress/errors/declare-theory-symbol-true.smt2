; expect: 2:16: 'true' is a symbol of the theory and cannot be declared
(declare-const true Bool)
