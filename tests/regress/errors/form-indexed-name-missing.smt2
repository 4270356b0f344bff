; expect: 3:17: expected the name of an indexed constant, got ')'
(declare-const a (_ BitVec 8))
(assert (=  a (_)))
