; expect: 3:28: expected a numeral, got '-1'
(declare-const a (_ BitVec 8))
(assert (= a ((_ extract 7 -1) a)))
