; expect: 8:52: get-assignment: the option :produce-assignments is false
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(set-option :produce-assignments false)(check-sat)(get-assignment)
