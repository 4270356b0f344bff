; expect: 6:18: fp takes no indices, got 2
(declare-const h Float16)
(declare-const s (_ BitVec 1))
(declare-const e (_ BitVec 5))
(declare-const m (_ BitVec 10))
(assert (= h ((_ fp 5 11) s e m)))
