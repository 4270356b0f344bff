; expect: 3:18: repeat: 131073 times a bit-vector of width 8; widths go up to 1048576
(declare-const a (_ BitVec 8))
(assert (= a ((_ repeat 131073) a)))
