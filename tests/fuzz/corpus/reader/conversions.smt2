(declare-const b (_ BitVec 16))(declare-const x Float32)(declare-const r RoundingMode)
(assert (= ((_ to_fp 5 11) b) ((_ to_fp 5 11) r b) ((_ to_fp_unsigned 5 11) r b) ((_ to_fp 5 11) r x)))
(assert (= ((_ to_fp 11 53) RNE x) ((_ to_fp 11 53) RTZ #b1) ((_ to_fp_unsigned 11 53) RTZ #b1)))
(check-sat)
