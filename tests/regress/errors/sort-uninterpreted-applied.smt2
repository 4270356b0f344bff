; expect: 4:20: the sort List is declared and has no definition: such sorts are not supported
(define-sort F () Float32)
(declare-sort List 1)
(declare-fun u () (List F))
