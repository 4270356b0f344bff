; expect: 2:18: this '(' is never closed
(set-info :notes (a b
