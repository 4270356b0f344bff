; expect: 4:10: bvuge: operands of different sorts, (_ BitVec 4) and (_ BitVec 8)
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(assert (bvuge c a))
