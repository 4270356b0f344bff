; expect: 3:24: expected an attribute, got '2'
(declare-const p Bool)
(assert (! p :weight 1 2))
