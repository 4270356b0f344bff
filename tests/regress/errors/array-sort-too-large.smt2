; expect: 7:19: a sort that names more than 1000 sorts
(define-sort Pair (X) (Array X X))
(define-sort Pair2 (X) (Pair (Pair X)))
(define-sort Pair4 (X) (Pair2 (Pair2 X)))
(define-sort Pair8 (X) (Pair4 (Pair4 X)))
(declare-const a (Pair8 Bool))
(declare-const b (Pair8 (Pair2 Bool)))
