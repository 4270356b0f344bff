; expect: 2:19: unknown sort 'Set'
(declare-const f (Set Bool))
