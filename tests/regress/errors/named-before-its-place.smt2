; expect: 3:14: unknown symbol 'f'
(declare-const p Bool)
(assert (and f (! p :named f)))
