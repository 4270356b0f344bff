; expect: 2:10: par is not supported
(assert (par (X) true))
