; expect: 3:26: the numeral 99999999999 is too large here
(declare-const a (_ BitVec 8))
(assert (= a ((_ extract 99999999999 0) a)))
