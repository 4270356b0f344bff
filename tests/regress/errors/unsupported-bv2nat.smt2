; expect: 5:15: bv2nat is not supported
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= p (bv2nat a)))
