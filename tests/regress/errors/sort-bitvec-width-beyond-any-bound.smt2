; expect: 2:28: the numeral 4294967296 is too large here
(declare-const f (_ BitVec 4294967296))
