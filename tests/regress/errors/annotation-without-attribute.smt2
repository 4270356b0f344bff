; expect: 3:13: expected an attribute, got ')'
(declare-const p Bool)
(assert (! p))
