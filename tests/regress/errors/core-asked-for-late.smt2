; expect: 3:13: :produce-unsat-cores must be set before the first assertion
(assert (! false :named f))
(set-option :produce-unsat-cores true)
