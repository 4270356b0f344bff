; expect: 2:28: expected true or false, got 'yes'
(set-option :print-success yes)
