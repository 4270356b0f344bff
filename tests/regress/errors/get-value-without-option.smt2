; expect: 5:2: get-value: the option :produce-models is false
(declare-const p Bool)
(set-option :produce-models false)
(check-sat)
(get-value (p))
