; expect: 2:29: expected true or false, got 'True'
(set-option :produce-models True)
