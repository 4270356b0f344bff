; expect: 5:15: store is not supported
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= p (store a a a)))
