; expect: 3:20: to_fp_unsigned takes 2 indices, got 0
(declare-const a (_ BitVec 8))
(assert (fp.isNaN (to_fp_unsigned RNE a)))
