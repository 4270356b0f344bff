; expect: 3:17: a bit-vector sort of width 2000000: widths go from 1 to 1048576
(declare-const a (_ BitVec 8))
(assert (= a (_ bv0 2000000)))
