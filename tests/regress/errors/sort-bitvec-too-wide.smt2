; expect: 2:21: a bit-vector sort of width 1048577: widths go from 1 to 1048576
(declare-const f (_ BitVec 1048577))
