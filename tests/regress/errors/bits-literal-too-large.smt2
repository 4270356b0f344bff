; expect: 3:17: the value 256 does not fit (_ BitVec 8)
(declare-const a (_ BitVec 8))
(assert (= a (_ bv256 8)))
