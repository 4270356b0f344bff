; expect: 2:18: unknown sort 'bool'
(declare-const f bool)
