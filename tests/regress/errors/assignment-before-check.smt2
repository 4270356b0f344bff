; expect: 8:2: get-assignment: there is no model, the last answer is not sat
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(get-assignment)
