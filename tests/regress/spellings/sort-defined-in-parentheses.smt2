; strict: 3:19: the sort Word stands without parentheses
(define-sort Word () (_ BitVec 32))
(declare-const f (Word))
(set-info :status sat)
(check-sat)
