; expect: 4:10: distinct: operands of different sorts, (_ BitVec 8) and Bool
(declare-const a (_ BitVec 8))
(declare-const p Bool)
(assert (distinct a p))
