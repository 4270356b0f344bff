; expect: 4:13: unknown symbol 'qq'
(declare-const p Bool)
(assert (or p
            qq))
