; expect: 2:16: 'fp.add' is a symbol of the theory and cannot be declared
(declare-const fp.add Bool)
