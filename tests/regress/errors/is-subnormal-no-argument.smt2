; expect: 8:10: fp.isSubnormal takes 1 argument, got 0
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (fp.isSubnormal))
