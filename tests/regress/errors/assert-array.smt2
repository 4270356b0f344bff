; expect: 3:9: an assertion must be a Bool, got a term of (Array Bool Bool)
(declare-const a (Array Bool Bool))
(assert a)
