; expect: 2:16: 'NaN' is a symbol of the theory and cannot be declared
(declare-const NaN Bool)
