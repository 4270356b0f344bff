; expect: 8:10: fp.isNormal: expected a floating-point term, got a term of Bool
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (fp.isNormal p))
