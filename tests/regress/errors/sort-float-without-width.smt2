; expect: 2:18: unknown sort 'Float'
(declare-const f Float)
