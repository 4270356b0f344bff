; expect: 3:9: an assertion must be a Bool, got a term of (_ BitVec 1)
(declare-const a (_ BitVec 8))
(assert (bvcomp a a))
