; expect: 4:2: get-unsat-core: the last answer is not unsat
(set-option :produce-unsat-cores true)
(assert (! false :named f))
(get-unsat-core)
