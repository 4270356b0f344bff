; expect: 3:9: this '(' is never closed
(declare-const p Bool)
(assert (and p (not p)
