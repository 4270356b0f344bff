; expect: 3:23: to_fp_unsigned takes 2 arguments, got 1
(declare-const a (_ BitVec 8))
(assert (fp.isNaN ((_ to_fp_unsigned 8 24) a)))
