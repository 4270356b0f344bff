; expect: 3:1: this '(' is never closed
(check-sat)
(check-sat
