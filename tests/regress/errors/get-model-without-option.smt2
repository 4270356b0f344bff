; expect: 4:2: get-model: the option :produce-models is false
(set-option :produce-models false)
(check-sat)
(get-model)
