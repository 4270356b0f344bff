; expect: 3:11: expected '_' and an indexed function, got 'and'
(declare-const p Bool)
(assert ((and p p)))
