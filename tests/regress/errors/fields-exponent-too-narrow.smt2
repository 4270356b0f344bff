; expect: 5:15: fp: the sign takes 1 bit and the exponent at least 2, got 1 and 1
(declare-const h Float16)
(declare-const s (_ BitVec 1))
(declare-const m (_ BitVec 10))
(assert (= h (fp s #b1 m)))
