; expect: 4:10: and: expected a Bool, got a term of (_ BitVec 8)
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(assert (and p a))
