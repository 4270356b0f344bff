; expect: 8:15: fp.to_ubv takes 1 index, got 0
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (= b (fp.to_ubv r x)))
