; expect: 2:2: unknown command 'check_sat'
(check_sat)
