; expect: 2:30: unknown sort 'Word'
(declare-const a (Array Bool Word))
