; expect: 2:28: expected a numeral, got '('
(declare-const f (_ BitVec (8)))
