; expect: 3:3: the definition of 'f' must be of (_ BitVec 4), got a term of (_ BitVec 8)
(define-const f (_ BitVec 4)
  #xff)
