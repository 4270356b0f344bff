; strict: 3:15: bvand takes at least 2 arguments, got 1
(declare-const a (_ BitVec 8))
(assert (= a (bvand a)))
(set-info :status sat)
(check-sat)
