; expect: 3:18: extract: bits 8 down to 1 of a bit-vector of width 8
(declare-const a (_ BitVec 8))
(assert (= a ((_ extract 8 1) a)))
