; expect: 4:15: bvsub: operands of different sorts, (_ BitVec 8) and (_ BitVec 4)
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(assert (= a (bvsub a c)))
