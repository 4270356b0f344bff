; expect: 3:19: Word takes no sorts, got 1
(define-sort Word () (_ BitVec 32))
(declare-const f (Word Bool))
