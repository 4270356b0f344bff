; expect: 3:10: =: operands of different sorts, (_ BitVec 4) and (_ BitVec 8)
(declare-const c (_ BitVec 4))
(assert (= c ((_ sign_extend 4) c)))
