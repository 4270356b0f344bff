; expect: 4:15: fp.sub: expected a floating-point term, got a term of (_ BitVec 8)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= x (fp.sub RTZ a x)))
