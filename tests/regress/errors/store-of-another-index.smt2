; expect: 4:18: store: the index must be of (_ BitVec 8), got a term of Bool
(declare-const a (Array (_ BitVec 8) Bool))
(declare-const i (_ BitVec 8))
(assert (select (store a true true) i))
