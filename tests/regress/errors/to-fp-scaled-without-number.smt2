; expect: 3:23: to_fp: expected a number, got a term of (_ BitVec 8)
(declare-const a (_ BitVec 8))
(assert (fp.isNaN ((_ to_fp 8 24) RNE 3 a)))
