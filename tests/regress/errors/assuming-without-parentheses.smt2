; expect: 3:21: expected '(' to open the assumptions, got 'p'
(declare-const p Bool)
(check-sat-assuming p)
