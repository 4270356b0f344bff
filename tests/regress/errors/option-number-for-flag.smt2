; expect: 2:34: expected true or false, got '1'
(set-option :produce-unsat-cores 1)
