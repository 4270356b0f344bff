; expect: 3:20: expected a numeral, got ')'
(declare-const a (_ BitVec 8))
(assert (= a (_ bv5)))
