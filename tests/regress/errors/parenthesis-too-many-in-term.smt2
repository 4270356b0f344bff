; expect: 3:17: this ')' closes nothing
(declare-const p Bool)
(assert (not p)))
