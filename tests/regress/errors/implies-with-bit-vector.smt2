; expect: 4:10: =>: expected a Bool, got a term of (_ BitVec 8)
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(assert (=> a p))
