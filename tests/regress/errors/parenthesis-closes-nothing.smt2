; expect: 2:12: this ')' closes nothing
(check-sat))
