; expect: 3:23: expected ')' behind the width, got '8'
(declare-const a (_ BitVec 8))
(assert (= a (_ bv5 8 8)))
