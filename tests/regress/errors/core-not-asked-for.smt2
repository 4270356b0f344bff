; expect: 4:2: get-unsat-core: the option :produce-unsat-cores is false
(assert (! false :named f))
(check-sat)
(get-unsat-core)
