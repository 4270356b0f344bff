; expect: 3:28: expected a numeral, got 'a'
(declare-const a (_ BitVec 8))
(assert (= a ((_ extract 7 a) a)))
