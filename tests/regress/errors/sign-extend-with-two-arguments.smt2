; expect: 4:18: sign_extend takes 1 argument, got 2
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(assert (= a ((_ sign_extend 4) c c)))
