; expect: 8:20: fp.sqrt: expected a floating-point term, got a term of RoundingMode
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (fp.isNaN (fp.sqrt r r)))
