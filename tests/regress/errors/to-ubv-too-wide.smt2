; expect: 8:18: a bit-vector sort of width 1048577: widths go from 1 to 1048576
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (= b ((_ fp.to_ubv 1048577) r x)))
