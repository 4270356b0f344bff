; expect: 5:9: unknown symbol 'f'
(push)
(declare-const f Bool)
(pop)
(assert f)
