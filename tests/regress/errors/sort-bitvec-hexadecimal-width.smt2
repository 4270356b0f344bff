; expect: 2:28: expected a numeral, got '#x8'
(declare-const f (_ BitVec #x8))
