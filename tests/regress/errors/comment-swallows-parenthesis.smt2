; expect: 2:1: this '(' is never closed
(assert true ; and that is all)
