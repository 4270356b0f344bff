; expect: 4:15: fp.add: expected a floating-point term, got a term of (_ BitVec 8)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= x (fp.add RTZ a x)))
