; expect: 2:18: unknown sort 'Boolean'
(declare-const f Boolean)
