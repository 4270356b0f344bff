; expect: 4:18: zero_extend: a bit-vector of width 4 extended by 1048573 bits; widths go up to 1048576
(declare-const a (_ BitVec 8))
(declare-const c (_ BitVec 4))
(assert (= a ((_ zero_extend 1048573) c)))
