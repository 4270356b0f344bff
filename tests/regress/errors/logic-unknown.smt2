; expect: 8:12: unknown logic 'QF_FLOAT'
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(set-logic QF_FLOAT)
