; expect: 3:23: to_fp: a bit-vector of width 8 is no (_ FloatingPoint 8 24)
(declare-const a (_ BitVec 8))
(assert (fp.isNaN ((_ to_fp 8 24) a)))
