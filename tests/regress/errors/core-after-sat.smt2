; expect: 5:2: get-unsat-core: the last answer is not unsat
(set-option :produce-unsat-cores true)
(assert (! true :named f))
(check-sat)
(get-unsat-core)
