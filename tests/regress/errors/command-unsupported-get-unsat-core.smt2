; expect: 2:2: get-unsat-core is not supported
(get-unsat-core)
