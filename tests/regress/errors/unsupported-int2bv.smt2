; expect: 3:18: int2bv is not supported
(declare-const a (_ BitVec 8))
(assert (= a ((_ int2bv 8) 3)))
