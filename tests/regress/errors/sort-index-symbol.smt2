; expect: 2:28: expected a numeral, got 'width'
(declare-const f (_ BitVec width))
