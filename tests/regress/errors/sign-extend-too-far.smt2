; expect: 4:18: sign_extend: a bit-vector of width 4 extended by 4294967295 bits; widths go up to 1048576
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(assert (= a ((_ sign_extend 4294967295) c)))
