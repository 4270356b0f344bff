; expect: 3:10: expected the name of a function, got '#b1'
(declare-const p Bool)
(assert (#b1 p))
