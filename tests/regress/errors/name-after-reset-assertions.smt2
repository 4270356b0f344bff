; expect: 4:9: unknown symbol 'p'
(declare-const p Bool)
(reset-assertions)
(assert p)
