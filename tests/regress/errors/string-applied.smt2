; expect: 3:10: expected the name of a function, got '"and"'
(declare-const p Bool)
(assert ("and" p p))
