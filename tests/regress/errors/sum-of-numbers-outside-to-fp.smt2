; expect: 5:15: + is not supported
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= p (+ 1 2)))
