; expect: 2:16: 'to_fp' is a symbol of the theory and cannot be declared
(declare-const to_fp Bool)
