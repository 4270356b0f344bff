; expect: 2:9: an assertion must be a Bool, got a term of (_ BitVec 1)
(assert #b1)
