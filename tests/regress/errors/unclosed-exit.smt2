; expect: 2:1: this '(' is never closed
(exit
