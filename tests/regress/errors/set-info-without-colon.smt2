; expect: 2:11: expected a keyword, got 'status'
(set-info status sat)
