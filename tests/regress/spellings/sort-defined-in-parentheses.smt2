; expect: 3:19: the sort Word takes no sorts as arguments
(define-sort Word () (_ BitVec 32))
(declare-const f (Word))
