; expect: 3:10: fp.isNaN: expected a floating-point term, got a term of (_ BitVec 8)
(declare-const a (_ BitVec 8))
(assert (fp.isNaN a))
