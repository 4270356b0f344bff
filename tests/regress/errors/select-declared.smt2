; expect: 2:14: 'select' is a symbol of the theory and cannot be declared
(declare-fun select (Bool) Bool)
