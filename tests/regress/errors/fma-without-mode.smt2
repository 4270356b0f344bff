; expect: 8:20: fp.fma takes 4 arguments, got 3
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (fp.isNaN (fp.fma x x x)))
