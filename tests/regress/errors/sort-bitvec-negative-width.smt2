; expect: 2:28: expected a numeral, got '-8'
(declare-const f (_ BitVec -8))
