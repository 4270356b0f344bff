; expect: 2:2: expected the name of a command, got ':check-sat'
(:check-sat)
