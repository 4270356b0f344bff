; strict: 2:18: a quoted symbol cannot contain '\'
(declare-const |a\b| Bool)
(set-info :status sat)
(check-sat)
