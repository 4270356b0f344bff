; expect: 4:24: an assumption must be a Bool, got a term of (_ BitVec 8)
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(check-sat-assuming (p a))
