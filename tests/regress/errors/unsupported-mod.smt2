; expect: 5:15: mod is not supported
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= p (mod 7 2)))
