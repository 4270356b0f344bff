; expect: 5:15: fp.to_real is not supported
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= p (fp.to_real x)))
