; expect: 3:26: not: expected a Bool, got a term of (_ BitVec 8)
(declare-const p Bool)
(assert (let ((p #x00)) (not p)))
