; expect: 8:10: bvusubo: expected a bit-vector, got a term of Bool
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (bvusubo p p))
