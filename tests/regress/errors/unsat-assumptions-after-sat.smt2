; expect: 8:13: get-unsat-assumptions: the last answer is not unsat
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(check-sat)(get-unsat-assumptions)
