; expect: 2:34: expected ')' to close the command, got 'true'
(set-option :produce-models true true)
