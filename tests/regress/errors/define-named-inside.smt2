; expect: 2:43: a term inside of a definition with parameters cannot be named
(define-fun f ((u Bool)) Bool (! u :named g))
