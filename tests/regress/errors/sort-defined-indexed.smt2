; expect: 3:21: the sort Word takes no indices
(define-sort Word () (_ BitVec 32))
(declare-const f (_ Word 32))
