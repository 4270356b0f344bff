; expect: 8:40: get-assertions: the option :produce-assertions is false
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(set-option :produce-assertions false)(get-assertions)
