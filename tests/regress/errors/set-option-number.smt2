; expect: 2:29: expected true or false, got '1'
(set-option :produce-models 1)
