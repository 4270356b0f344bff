; expect: 2:22: expected a numeral, got 'true'
(set-option :timeout true)
