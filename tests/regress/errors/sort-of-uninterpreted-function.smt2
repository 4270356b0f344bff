; expect: 2:18: unknown sort '->'
(declare-const f -> Bool Bool)
