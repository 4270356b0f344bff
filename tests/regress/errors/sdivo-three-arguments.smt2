; expect: 8:10: bvsdivo takes 2 arguments, got 3
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (bvsdivo b b b))
