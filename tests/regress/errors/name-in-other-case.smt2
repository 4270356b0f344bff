; expect: 3:9: unknown symbol 'P'
(declare-const p Bool)
(assert P)
