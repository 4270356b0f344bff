; expect: 5:18: unknown sort 'Word'
(push)
(define-sort Word () (_ BitVec 32))
(pop)
(declare-const f Word)
