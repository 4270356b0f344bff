; expect: 2:35: expected true or false, got '1'
(set-option :minimize-unsat-cores 1)
