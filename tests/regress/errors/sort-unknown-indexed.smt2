; expect: 2:21: unknown sort 'BitVector'
(declare-const f (_ BitVector 8))
