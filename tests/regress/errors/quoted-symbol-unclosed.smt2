; expect: 2:16: this quoted symbol has no closing '|'
(declare-const |x Bool)
(check-sat)
