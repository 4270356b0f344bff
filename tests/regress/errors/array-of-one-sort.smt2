; expect: 2:19: Array takes 2 sorts, got 1
(declare-const a (Array (_ BitVec 8)))
