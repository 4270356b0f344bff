; expect: 8:18: fp.to_ubv takes 1 index, got 2
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (= b ((_ fp.to_ubv 8 8) r x)))
