; expect: 3:1: expected '(' to open a command, got '//'
(check-sat)
// done
