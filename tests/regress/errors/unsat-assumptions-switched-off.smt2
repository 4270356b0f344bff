; expect: 8:72: get-unsat-assumptions: the option :produce-unsat-assumptions is false
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(set-option :produce-unsat-assumptions false)(assert false)(check-sat)(get-unsat-assumptions)
