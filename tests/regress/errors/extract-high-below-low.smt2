; expect: 3:18: extract: bits 0 down to 7 of a bit-vector of width 8
(declare-const a (_ BitVec 8))
(assert (= a ((_ extract 0 7) a)))
