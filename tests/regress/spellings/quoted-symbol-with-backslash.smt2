; expect: 2:18: a quoted symbol cannot contain '\'
(declare-const |a\b| Bool)
