; expect: 8:22: :reason-unknown: the last answer was not unknown
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(check-sat)(get-info :reason-unknown)
