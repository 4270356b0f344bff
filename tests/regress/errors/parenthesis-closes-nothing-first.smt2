; expect: 2:1: this ')' closes nothing
)(check-sat)
