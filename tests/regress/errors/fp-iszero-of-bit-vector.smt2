; expect: 3:10: fp.isZero: expected a floating-point term, got a term of (_ BitVec 8)
(declare-const a (_ BitVec 8))
(assert (fp.isZero a))
