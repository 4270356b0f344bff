; expect: 8:20: fp.max takes 2 arguments, got 1
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (fp.isNaN (fp.max x)))
